#include "platform/Steps.h"

namespace rv52 {

Answer ErrorPrompt(Prompts& prompts, const std::string& description) {
    return prompts.Ask({description, "Error", Icon::Critical, Buttons::AbortRetryIgnore});
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
