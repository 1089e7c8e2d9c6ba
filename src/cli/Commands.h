#pragma once

#include "cli/Options.h"
#include "platform/Failure.h"

namespace rv52::cli {

class Tool;

// A command that ends otherwise than it should, with the one line that says why and what next.
class Ending : public Failure {
 public:
    Ending(Status how, const std::string& why) : Failure(why), status(how) {}

    const Status status;
};

// Each command of the tool: what it is called, and what it does. Throws Ending and FileFailure.
using Command = Status (*)(Tool& tool);
Command CommandNamed(const std::string& name);

Status ListPorts(Tool& tool);
Status Identify(Tool& tool);
Status Download(Tool& tool);
Status Upload(Tool& tool);
Status Verify(Tool& tool);
Status Vin(Tool& tool);

Status Show(Tool& tool);
Status Diff(Tool& tool);
Status New(Tool& tool);
Status Modify(Tool& tool);
Status Import(Tool& tool);
Status Export(Tool& tool);
Status Check(Tool& tool);

}  // namespace rv52::cli
