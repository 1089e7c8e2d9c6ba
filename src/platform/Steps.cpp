#include "platform/Steps.h"

namespace rv52 {

Answer ErrorPrompt(Prompts& prompts, const std::string& description) {
    return prompts.Ask({description, "Error", Icon::Critical, Buttons::AbortRetryIgnore});
}

void Steps::Tell(const std::string& text, const std::string& title, Icon icon) {
    (*this)([&] { prompts_.Ask({text, title, icon, Buttons::Ok}); });
}

bool Steps::Again(const char* description) {
    switch (ErrorPrompt(prompts_, description)) {
        case Answer::Retry:
            return true;
        case Answer::Ignore:
            return false;
        default:
            Abandon();
    }
}

}  // namespace rv52
