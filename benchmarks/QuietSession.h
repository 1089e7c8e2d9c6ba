#pragma once

#include "QuietPorts.h"
#include "app/state/Session.h"
#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"

namespace rv52::bench {

// The core by itself on a line: nothing is shown, and nobody looks on.
struct UnshownSession {
    explicit UnshownSession(Line& line)
        : session(Ports{line, nobody, view, view, files, settings, printer}) {}

    Nobody nobody;
    NoView view;
    NoFiles files;
    NoSettings settings;
    NoPrinter printer;
    Session session;
};

// The same with a module on virtual time.
struct QuietSession {
    explicit QuietSession(const ModuleOptions& options = ModuleOptions()) : module(options) {}

    SimulatedModule module;
    VirtualLine line{module};
    UnshownSession unshown{line};
    Nobody& nobody = unshown.nobody;
    Session& session = unshown.session;
};

}  // namespace rv52::bench
