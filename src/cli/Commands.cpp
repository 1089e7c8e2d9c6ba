#include "cli/Commands.h"

#include <map>

namespace rv52::cli {

Command CommandNamed(const std::string& name) {
    static const std::map<std::string, Command> commands{
        {"ports", ListPorts}, {"id", Identify},   {"download", Download}, {"upload", Upload},
        {"verify", Verify},   {"vin", Vin},       {"show", Show},         {"diff", Diff},
        {"new", New},         {"modify", Modify}, {"import", Import},     {"export", Export},
        {"check", Check}};
    return commands.at(name);
}

}  // namespace rv52::cli
