#include "platform/linux/CupsLibrary.h"

#include "platform/Failure.h"

#include <dlfcn.h>

namespace rv52 {

namespace {

// One function of the library, by its name.
class Loader {
 public:
    Loader() : library_(dlopen("libcups.so.2", RTLD_NOW)) {
        if (library_ == nullptr) throw Failure("The print system's library libcups.so.2 is missing.");
    }

    template <class Function>
    void operator()(Function*& function, const char* name) const {
        function = reinterpret_cast<Function*>(dlsym(library_, name));
        if (function == nullptr)
            throw Failure(std::string("The print system's library libcups.so.2 has no ") + name + ".");
    }

 private:
    void* library_;  // from now on to the program's end
};

}  // namespace

CupsLibrary::CupsLibrary() {
    const Loader load;
    load(cupsAddOption, "cupsAddOption");
    load(cupsCancelDestJob, "cupsCancelDestJob");
    load(cupsCopyDestInfo, "cupsCopyDestInfo");
    load(cupsCreateDestJob, "cupsCreateDestJob");
    load(cupsEncryption, "cupsEncryption");
    load(cupsFindDestDefault, "cupsFindDestDefault");
    load(cupsFindDestSupported, "cupsFindDestSupported");
    load(cupsFinishDestDocument, "cupsFinishDestDocument");
    load(cupsFreeDestInfo, "cupsFreeDestInfo");
    load(cupsFreeDests, "cupsFreeDests");
    load(cupsFreeOptions, "cupsFreeOptions");
    load(cupsGetDest, "cupsGetDest");
    load(cupsGetDestMediaByIndex, "cupsGetDestMediaByIndex");
    load(cupsGetDestMediaByName, "cupsGetDestMediaByName");
    load(cupsGetDestMediaBySize, "cupsGetDestMediaBySize");
    load(cupsGetDestMediaCount, "cupsGetDestMediaCount");
    load(cupsGetDests2, "cupsGetDests2");
    load(cupsGetOption, "cupsGetOption");
    load(cupsLastErrorString, "cupsLastErrorString");
    load(cupsLocalizeDestValue, "cupsLocalizeDestValue");
    load(cupsServer, "cupsServer");
    load(cupsSetPasswordCB2, "cupsSetPasswordCB2");
    load(cupsStartDestDocument, "cupsStartDestDocument");
    load(cupsWriteRequestData, "cupsWriteRequestData");
    load(httpClose, "httpClose");
    load(httpConnect2, "httpConnect2");
    load(httpSetTimeout, "httpSetTimeout");
    load(ippFindAttribute, "ippFindAttribute");
    load(ippGetCollection, "ippGetCollection");
    load(ippGetCount, "ippGetCount");
    load(ippGetInteger, "ippGetInteger");
    load(ippGetString, "ippGetString");
    load(ippPort, "ippPort");
    // A spooler that wants a password refuses the page: the library would ask for it on the terminal.
    cupsSetPasswordCB2(
        [](const char*, http_t*, const char*, const char*, void*) -> const char* { return nullptr; },
        nullptr);
}

const CupsLibrary& Cups() {
    static const CupsLibrary library;
    return library;
}

}  // namespace rv52
