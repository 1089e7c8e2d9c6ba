#pragma once

#include "simulator/Peer.h"

#include <cstddef>
#include <optional>

namespace rv52 {

// What the module is about to do about one received byte. Faults change it before it is done.
struct ModuleStep : PeerAnswer {
    // The command that the byte completed; None: it began one, continued one, or was no command.
    enum class Completed { None, Identification, Address, Read, Write };
    struct Store {
        int address;
        std::uint8_t byte;
    };

    Completed completed = Completed::None;
    std::size_t echoes = 0;      // the leading bytes that are echoes; the reply proper follows
    std::optional<Store> store;  // only in a write

    void Send(std::uint8_t byte) { bytes.push_back({byte, {}}); }
    bool HasReply() const { return bytes.size() > echoes; }
};

}  // namespace rv52
