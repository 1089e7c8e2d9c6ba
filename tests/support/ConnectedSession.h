#pragma once

#include "link/commands/LineConditions.h"
#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"
#include "support/TestSession.h"

namespace rv52::test {

inline constexpr const char* kTimeoutText = "RS-232 timeout. Check cable and click Abort.";
// The verdicts on an upload.
inline constexpr const char* kCompleted = "Upload completed.";
inline constexpr const char* kUnread = "Firmware ID read failed - cannot upload.";
inline constexpr const char* kUnprogrammed = "Upload aborted - EEPROM programming failed.";
inline constexpr const char* kUnverified = "Upload aborted - EEPROM verification failed.";

// A session whose line leads to this far end, on virtual time.
struct ConnectedSession {
    explicit ConnectedSession(Peer& peer) : line(peer), test(line) {
        HandleLineConditions(session);
        state.EchoMode = true;  // as a module left it that echoes
    }

    VirtualLine line;
    TestSession test;
    ScriptedPrompts& prompts = test.prompts;
    Session& session = test.session;
    AppState& state = session.state;
};

// The same session as it would be with another user and line.
inline Ports PortsOf(const Session& session, Prompts& prompts, Line& line) {
    return {line, prompts, session.view, session.shell, session.files, session.settings, session.printer};
}

// The same with a simulated module that has just been identified.
struct ConnectedModule {
    explicit ConnectedModule(const ModuleOptions& options, Faults faults = {})
        : module(options, std::move(faults)), connected(module) {
        state.TableType = options.type;
        state.EchoMode = options.echo;
    }

    SimulatedModule module;
    ConnectedSession connected;
    VirtualLine& line = connected.line;
    ScriptedPrompts& prompts = connected.prompts;
    RecordingShell& shell = connected.test.shell;
    Session& session = connected.session;
    AppState& state = connected.state;
};

inline ModuleOptions Options(TableType type, bool echo) {
    ModuleOptions options(type);
    options.echo = echo;
    return options;
}

}  // namespace rv52::test
