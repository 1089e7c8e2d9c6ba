#include "table/commands/FileQuestions.h"

#include "app/state/Session.h"
#include "platform/Failure.h"

#include <utility>

namespace rv52 {

namespace {

std::string OrAllFiles(const std::string& filter) {
    return filter.empty() ? "All Files (*.*)|*.*" : filter;
}

[[noreturn]] void FailOpen(const char* description) {
    throw FileDialogFailure(FileDialogFailure::kFileOpen, "File Open", description);
}

[[noreturn]] void FailSave(const char* description) {
    throw FileDialogFailure(FileDialogFailure::kFileSave, "File Save", description);
}

MessageBox NotFoundBox(const std::string& path, const std::string& question) {
    MessageBox box{path + "\r\nFile not found.", "File Open", Icon::Warning, Buttons::RetryCancel};
    if (!question.empty()) {
        box.text += "\r\n\r\n" + question;
        box.buttons = Buttons::YesNoCancel;
    }
    return box;
}

}  // namespace

MessageBox ExistsBox(const std::string& path, const std::string& title, const std::string& question) {
    return {path + "\r\nThis file already exists.\r\n\r\n" +
                (question.empty() ? "Replace existing file?" : question),
            title, Icon::Warning, Buttons::YesNoCancel, Answer::No};
}

std::string FileOpen(Session& session, const std::string& fileTitle, const std::string& filter,
                     const std::string& notExistMessage, std::string chosen) {
    const FileDialog dialog{fileTitle, OrAllFiles(filter)};
    std::string path;
    const auto body = [&](Steps& step) {
        for (;;) {
            path = std::exchange(chosen, {});
            if (path.empty())
                path = step.Value([&] { return session.prompts.AskOpenPath(dialog); }, std::string{});
            if (path.empty() || step.Value([&] { return session.files.Exists(path); }, false)) return;
            const auto answer = step.Value(
                [&] { return session.prompts.Ask(NotFoundBox(path, notExistMessage)); }, Answer::No);
            if (answer == Answer::Yes) return;
            if (answer == Answer::No) return path.clear();
            if (answer != Answer::Retry) FailOpen("Canceled File Open");
        }
    };
    session.steps.Procedure([] { FailOpen("Aborted File Open"); }, body);
    return path;
}

std::string FileSave(Session& session, const std::string& fileTitle, const std::string& filter,
                     const std::string& existMessage) {
    const FileDialog dialog{fileTitle, OrAllFiles(filter)};
    std::string path;
    const auto body = [&](Steps& step) {
        for (;;) {
            path = step.Value([&] { return session.prompts.AskSavePath(dialog); }, std::string{});
            // Where it cannot be told whether the file exists, the question is asked: nothing is replaced
            // unasked.
            if (path.empty() || !step.Value([&] { return session.files.Exists(path); }, true)) return;
            const auto answer = step.Value(
                [&] { return session.prompts.Ask(ExistsBox(path, "File Save", existMessage)); }, Answer::No);
            if (answer == Answer::Yes) return;
            if (answer != Answer::No) FailSave("Canceled File Save");
        }
    };
    session.steps.Procedure([] { FailSave("Aborted File Save"); }, body);
    return path;
}

}  // namespace rv52
