#include "app/ui/HelpWindow.h"
#include "fuzz/Bytes.h"
#include "fuzz/Screen.h"
#include "fuzz/Target.h"
#include "platform/qt/QtFiles.h"
#include "support/FailureOf.h"
#include "support/TemporaryFolder.h"

#include <fstream>

namespace rv52::fuzz {

namespace {

// Bytes changed, cut off and put in, each at a place that the input names.
std::string Damaged(std::string file, Bytes bytes) {
    while (bytes.Any()) {
        const int deed = bytes.Next() % 4;
        const int high = bytes.Next();
        const auto at = static_cast<std::size_t>(high * 65536 + bytes.Next() * 256 + bytes.Next());
        const auto place = file.empty() ? 0 : at % file.size();
        const auto byte = static_cast<char>(bytes.Next());
        if (deed == 0) file.insert(place, 1, byte);
        if (deed == 1) file.erase(place, static_cast<unsigned char>(byte));
        if (deed == 2) file.resize(place);
        if (deed == 3 && !file.empty()) file[place] = byte;
    }
    return file;
}

}  // namespace

// The help file as the build makes it, damaged, and whatever lies in its place.
void Target(std::string_view input) {
    NeedApplication();
    static const auto shipped = QtFiles().ReadWhole(RV52_PROGRAM_FOLDER "/Corvane_RV52_Help.chm");
    static const test::TemporaryFolder folder;
    static auto& window = *new HelpWindow(nullptr);
    const auto path = (folder.Path() / "help.chm").string();
    for (const auto& content : {Damaged(shipped, Bytes(input)), std::string(input)}) {
        std::ofstream(path, std::ios::binary) << content;
        const bool opened = test::FailureOf([&] { window.Open(path); }).empty();
        Require(opened == (content == shipped), "the whole file opens, and no other");
        if (opened) window.grab();
        window.hide();
    }
}

}  // namespace rv52::fuzz
