#pragma once

#include "platform/PrintSystem.h"

namespace rv52 {

// The spooler that CUPS_SERVER or the system's client.conf names. Window events are served while it lets
// wait, except keys and mouse.
class CupsPrintSystem : public PrintSystem {
 public:
    std::vector<PrintQueue> Queues() override;
    PrintMedia Media(const std::string& queue) override;
    void Send(const PrintOrder& order, const std::string& document) override;
};

}  // namespace rv52
