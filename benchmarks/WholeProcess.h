#pragma once

#include <QProcessEnvironment>
#include <QStringList>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class QProcess;

namespace rv52::bench {

// The path of a program in this program's folder.
QString ProgramBeside(const char* name);

// An X screen in memory, wide enough for two windows beside each other, with the rendering of 3D left to the
// processor.
class VirtualScreen {
 public:
    VirtualScreen();
    ~VirtualScreen();
    VirtualScreen(const VirtualScreen&) = delete;
    VirtualScreen& operator=(const VirtualScreen&) = delete;

    QProcessEnvironment Environment() const;
    // For this program's own windows, before it has a QApplication.
    void Use() const;

 private:
    std::vector<std::pair<const char*, QString>> Variables() const;

    std::unique_ptr<QProcess> server_;
    QString display_;
};

// Runs a program to its end and returns what it said in lines of a name and a number, and under "started" the
// moment before it was started, in microseconds of the monotonic clock.
std::map<std::string, double> LinesOf(const QString& program, const QStringList& arguments,
                                      const QProcessEnvironment& environment);

}  // namespace rv52::bench
