#pragma once

#include <cups/cups.h>

namespace rv52 {

// What the print system's library offers, by its own names. It brings nineteen other libraries along, for
// networks and passwords, so it is loaded when something is printed first.
struct CupsLibrary {
    CupsLibrary();

    decltype(&::cupsAddOption) cupsAddOption = nullptr;
    decltype(&::cupsCancelDestJob) cupsCancelDestJob = nullptr;
    decltype(&::cupsCopyDestInfo) cupsCopyDestInfo = nullptr;
    decltype(&::cupsCreateDestJob) cupsCreateDestJob = nullptr;
    decltype(&::cupsEncryption) cupsEncryption = nullptr;
    decltype(&::cupsFindDestDefault) cupsFindDestDefault = nullptr;
    decltype(&::cupsFindDestSupported) cupsFindDestSupported = nullptr;
    decltype(&::cupsFinishDestDocument) cupsFinishDestDocument = nullptr;
    decltype(&::cupsFreeDestInfo) cupsFreeDestInfo = nullptr;
    decltype(&::cupsFreeDests) cupsFreeDests = nullptr;
    decltype(&::cupsFreeOptions) cupsFreeOptions = nullptr;
    decltype(&::cupsGetDest) cupsGetDest = nullptr;
    decltype(&::cupsGetDestMediaByIndex) cupsGetDestMediaByIndex = nullptr;
    decltype(&::cupsGetDestMediaByName) cupsGetDestMediaByName = nullptr;
    decltype(&::cupsGetDestMediaBySize) cupsGetDestMediaBySize = nullptr;
    decltype(&::cupsGetDestMediaCount) cupsGetDestMediaCount = nullptr;
    decltype(&::cupsGetDests2) cupsGetDests2 = nullptr;
    decltype(&::cupsGetOption) cupsGetOption = nullptr;
    decltype(&::cupsLastErrorString) cupsLastErrorString = nullptr;
    decltype(&::cupsLocalizeDestValue) cupsLocalizeDestValue = nullptr;
    decltype(&::cupsServer) cupsServer = nullptr;
    decltype(&::cupsSetPasswordCB2) cupsSetPasswordCB2 = nullptr;
    decltype(&::cupsStartDestDocument) cupsStartDestDocument = nullptr;
    decltype(&::cupsWriteRequestData) cupsWriteRequestData = nullptr;
    decltype(&::httpClose) httpClose = nullptr;
    decltype(&::httpConnect2) httpConnect2 = nullptr;
    decltype(&::httpSetTimeout) httpSetTimeout = nullptr;
    decltype(&::ippFindAttribute) ippFindAttribute = nullptr;
    decltype(&::ippGetCollection) ippGetCollection = nullptr;
    decltype(&::ippGetCount) ippGetCount = nullptr;
    decltype(&::ippGetInteger) ippGetInteger = nullptr;
    decltype(&::ippGetString) ippGetString = nullptr;
    decltype(&::ippPort) ippPort = nullptr;
};

// Throws Failure where the library is missing.
const CupsLibrary& Cups();

}  // namespace rv52
