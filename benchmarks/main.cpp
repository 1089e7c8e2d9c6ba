#include "Groups.h"
#include "WholeProcess.h"

#include <QApplication>
#include <QProcess>
#include <QSettings>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

namespace {

using namespace rv52::bench;

struct Group {
    std::string_view name;
    void (*measure)(Report&);
};

constexpr Group kGroups[] = {
    {"core", MeasureCore}, {"chart", MeasureChart}, {"transfer", MeasureTransfers}, {"start", MeasureStart}};

int Refuse() {
    std::fputs("usage: rv52_bench [--check] [core] [chart] [transfer] [start]\n", stderr);
    return 2;
}

bool IsGroup(std::string_view name) {
    return std::ranges::any_of(kGroups, [&](const Group& group) { return group.name == name; });
}

}  // namespace

// Prints every figure, or those of the groups named. With --check, exit status 1 when a ratio missed its
// target.
int main(int argc, char** argv) {
    std::vector<std::string_view> wanted(argv + 1, argv + argc);
    const bool check = std::erase(wanted, "--check") > 0;
    if (!std::ranges::all_of(wanted, IsGroup)) return Refuse();

    const VirtualScreen screen;
    screen.Use();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QProcess::nullDevice());
    int qtArguments = 1;
    const QApplication application(qtArguments, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Report report;
    for (const auto& group : kGroups) {
        if (!wanted.empty() && std::ranges::find(wanted, group.name) == wanted.end()) continue;
        try {
            group.measure(report);
        } catch (const std::exception& failure) {
            report.CouldNot(std::string(group.name), failure.what());
        }
    }
    return check && report.GatesMissed() > 0 ? 1 : 0;
}
