#include "cli/Options.h"

#include "app/state/Version.h"
#include "platform/ComDevices.h"
#include "platform/Text.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace rv52::cli {

namespace {

constexpr const char* kAbout =
    "Ignition advance tables and RV52 modules from the shell.\n"
    "Ends with 0: done; 1: a difference or a finding; 2: usage; 3: the file; 4: the port; 5: no or a wrong "
    "answer of "
    "the module;\n6: programming failed; 7: verification failed; 130: interrupted.";

const std::map<std::string, TableType> kTypes{{"RACE", TableType::RACE}, {"EX", TableType::EX}};

class Reader {
 public:
    Reader() {
        app_.set_version_flag("--version", std::string("rv52 ") + kVersion);
        app_.require_subcommand(0, 1);  // without one, a word that is no command is named
        app_.fallthrough();
        app_.add_flag("-q,--quiet", options_.quiet, "no progress, no remarks");
        auto* port = app_.add_option("--port", options_.port,
                                     "the module's port ComN; else the one stored by the window")
                         ->type_name("N")
                         ->check(CLI::Range(1, kHighestCommPort).description(""));
        auto* device = app_.add_option("--device", options_.device, "the module's serial device")
                           ->type_name("PATH")
                           ->check(FileName());
        auto* simulate =
            app_.add_option("--simulate", options_.simulate, "a simulated module, RACE or EX, for this run")
                ->type_name("RACE|EX")
                ->transform(TypeName());
        port->excludes(device)->excludes(simulate);
        device->excludes(simulate);
        AddModuleCommands();
        AddFileCommands();
    }

    std::variant<Options, Status> Read(int argc, char** argv) {
        try {
            app_.parse(argc, argv);
            if (app_.get_subcommands().empty()) throw CLI::RequiredError("a command");
        } catch (const CLI::ExtrasError& error) {
            const auto left = app_.remaining();
            const auto word =
                std::ranges::find_if(left, [](const auto& text) { return !text.starts_with('-'); });
            if (!app_.get_subcommands().empty() || word == left.end()) return Refuse(error.what());
            return Refuse("\"" + *word + "\" is no command");
        } catch (const CLI::Success& wanted) {
            app_.exit(wanted);
            return Status::Done;
        } catch (const CLI::ParseError& error) {
            return Refuse(error.what());
        }
        options_.command = app_.get_subcommands().front()->get_name();
        if (json_) options_.form = Form::Json;
        if (csv_) options_.form = Form::Csv;
        for (const auto* file : {&first_, &second_})
            if (!file->empty()) options_.files.push_back(*file);
        if (!AdmitsModule(options_.command))
            for (const auto& file : {options_.files, {options_.backup, options_.image, options_.output}})
                if (std::ranges::count(file, kModule) > 0)
                    return Refuse("\"module\" is the module itself here; ./module is a file of that name");
        return options_;
    }

 private:
    static Status Refuse(const std::string& why) {
        std::cerr << "rv52: " << OneLine(why) << " (rv52 --help lists commands and options)\n";
        return Status::Usage;
    }
    // RACE or EX, in letters of any case.
    static CLI::Validator TypeName() {
        return {[](std::string& text) {
                    const auto type = kTypes.find(UpperCase(text));
                    if (type == kTypes.end()) return text + " is neither RACE nor EX";
                    text = std::to_string(static_cast<int>(type->second));
                    return std::string();
                },
                ""};
    }

    static CLI::Validator NotEmpty() {
        return {[](std::string& text) { return text.empty() ? std::string("it is empty") : std::string(); },
                ""};
    }
    // An option that was swallowed as the value of the one before it names no file.
    static CLI::Validator FileName() {
        return {[](std::string& text) {
                    if (text.empty()) return std::string("its name is empty");
                    if (text.size() == 1 || text[0] != '-') return std::string();
                    return text + " is an option; ./" + text + " is a file of that name";
                },
                ""};
    }

    CLI::App& Add(const char* name, const char* does) { return *app_.add_subcommand(name, does); }
    CLI::App& AddReport(const char* name, const char* does) {
        auto& command = Add(name, does);
        command.add_flag("--json", json_, "the result as JSON");
        return command;
    }
    static void Need(CLI::App& command, const char* name, std::string& into, const char* what) {
        command.add_option(name, into, what)->type_name("")->required()->check(FileName());
    }

    void AddModuleCommands() {
        AddReport("ports", "lists the serial ports that are there, and whether they may be used");
        AddReport("id", "identifies the module: its name, type and whether it echoes");
        auto& download = Add("download", "reads table and parameters of the module into a table file");
        Need(download, "FILE", first_, "the table file, - for standard output");
        download.add_option("--image", options_.image, "keeps the bytes that were read, too")
            ->type_name("FILE")
            ->check(FileName());
        auto& upload = Add("upload", "programs the module with a table file, and reads back every byte");
        Need(upload, "FILE", first_, "the table file, - for standard input");
        upload
            .add_option(
                "--backup", options_.backup,
                "downloads into this file first, and does not go on without it; takes from the module the "
                "four flag bits that a file does not keep, which else become 0")
            ->type_name("FILE")
            ->check(FileName());
        upload.add_flag("-y,--yes", options_.yes, "does not ask before programming");
        auto& verify =
            AddReport("verify", "compares the module with a table file byte by byte; writes nothing");
        Need(verify, "FILE", first_, "the table file, - for standard input");
        auto& vin = AddReport("vin", "reads the module's VIN, or writes and verifies another one");
        vin.add_option("NEW", options_.vin, "the new VIN, 17 characters")->type_name("")->check(NotEmpty());
        vin.add_flag("-y,--yes", options_.yes, "does not ask before programming");
    }

    void AddFileCommands() {
        auto& show = AddReport(
            "show",
            "writes table and parameters as text; the surface and the report are drawn by the window only");
        Need(show, "FILE", first_, "the table file, or module");
        show.add_flag("--csv", csv_, "the table alone, for a spreadsheet")
            ->excludes(show.get_option("--json"));
        auto& diff = AddReport("diff", "tells which cells and parameters differ; ends with 1 when any does");
        Need(diff, "A", first_, "a table file, or module");
        Need(diff, "B", second_, "a table file, or module");
        auto& make = Add("new", "makes a table of the two switch settings");
        make.add_option("TYPE", options_.type, "RACE or EX")
            ->type_name("")
            ->required()
            ->transform(TypeName());
        make.add_option("--timing", options_.timing,
                        "shifts by its distance from 5 in degrees; EX: at most 5")
            ->required()
            ->type_name("0..9")
            ->check(CLI::Range(0, 9).description(""));
        make.add_option("--slope", options_.slope, "0 the smallest advance, 9 the largest")
            ->required()
            ->type_name("0..9")
            ->check(CLI::Range(0, 9).description(""));
        Need(make, "FILE", first_, "the table file, - for standard output");
        auto& modify = Add("modify", "changes cells of a table file as Modify does");
        Need(modify, "FILE", first_, "the table file, - for standard input and output");
        modify.add_option("--cells", options_.cells, "RPM..RPM,MAP..MAP, for example 3000..5000,28..30")
            ->type_name("RANGES")
            ->required();
        modify
            .add_option("--by", options_.expression,
                        "30 sets, -1 and +1.5 shift, 95% scales, -5% and +5% change")
            ->type_name("CHANGE")
            ->required();
        modify.add_option("-o,--output", options_.output, "writes there instead")
            ->type_name("FILE")
            ->check(FileName());
        auto& import = Add(
            "import", "makes a table file of a spreadsheet's CSV; a file that is there keeps its parameters");
        Need(import, "CSV", first_, "as export writes it, - for standard input");
        Need(import, "FILE", second_, "the table file, - for standard output");
        auto& xport = Add("export", "writes a file's table as CSV, exact both ways");
        Need(xport, "FILE", first_, "the table file, - for standard input");
        Need(xport, "CSV", second_, "- for standard output");
        auto& check = AddReport("check", "says of each file: good, or what is wrong and where");
        check.add_option("FILE", options_.files, "table files")->type_name("")->required()->check(FileName());
    }

    CLI::App app_{kAbout, "rv52"};
    Options options_;
    std::string first_;
    std::string second_;
    bool json_ = false;
    bool csv_ = false;
};

}  // namespace

std::variant<Options, Status> ReadOptions(int argc, char** argv) {
    return Reader().Read(argc, argv);
}

}  // namespace rv52::cli
