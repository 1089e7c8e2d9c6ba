#pragma once

#include "QuietPorts.h"
#include "app/state/Session.h"
#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"

namespace rv52::bench {

// The core by itself: a module on virtual time, nothing shown.
struct QuietSession {
    explicit QuietSession(const ModuleOptions& options = ModuleOptions()) : module(options) {}

    SimulatedModule module;
    VirtualLine line{module};
    Nobody nobody;
    NoView view;
    NoFiles files;
    NoSettings settings;
    NoPrinter printer;
    Session session{Ports{line, nobody, view, view, files, settings, printer}};
};

}  // namespace rv52::bench
