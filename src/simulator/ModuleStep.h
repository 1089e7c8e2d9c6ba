#pragma once

#include "simulator/Peer.h"

#include <cstddef>
#include <optional>

namespace rv52 {

// What the module keeps in mind from one byte to the next, and forgets without power.
struct ModuleState {
    // What it takes the next byte for.
    enum class Expecting { Command, AddressLow, AddressHigh, Data };

    Expecting expecting = Expecting::Command;
    int address = 0;
    std::uint8_t addressLow = 0;
};

// What the module is about to do about one thing that happened to it. Faults change it before it is done.
struct ModuleStep : PeerAnswer {
    enum class Cause { Byte, PortClosed };
    // The command that the byte completed; None: it began one, continued one, or was no command.
    enum class Completed { None, Identification, Address, Read, Write };
    struct Store {
        int address;
        std::uint8_t byte;
    };

    Cause cause = Cause::Byte;
    // What the byte was to the module, and where it stood; and how it goes on.
    ModuleState before;
    ModuleState after;

    Completed completed = Completed::None;
    std::size_t echoes = 0;      // the leading bytes that are echoes; the reply proper follows
    std::size_t strays = 0;      // those at the very front that are no echoes after all
    std::optional<Store> store;  // only in a write
    // How long it has no power from here on, if it loses it: nothing sent to it meanwhile reaches it.
    std::optional<std::chrono::milliseconds> away;

    void Send(std::uint8_t byte) { bytes.push_back({byte, {}}); }
    bool HasEcho() const { return echoes > strays; }
    bool HasReply() const { return bytes.size() > echoes; }
};

}  // namespace rv52
