#pragma once

#include <cups/cups.h>

namespace rv52 {

// What the print system's library offers, by its own names. It brings nineteen other libraries along, for
// networks and passwords, so it is loaded when something is printed first.
struct CupsLibrary {
    CupsLibrary();

    decltype(&::cupsAddOption) cupsAddOption;
    decltype(&::cupsCancelDestJob) cupsCancelDestJob;
    decltype(&::cupsCopyDestInfo) cupsCopyDestInfo;
    decltype(&::cupsCreateDestJob) cupsCreateDestJob;
    decltype(&::cupsEncryption) cupsEncryption;
    decltype(&::cupsFindDestDefault) cupsFindDestDefault;
    decltype(&::cupsFindDestSupported) cupsFindDestSupported;
    decltype(&::cupsFinishDestDocument) cupsFinishDestDocument;
    decltype(&::cupsFreeDestInfo) cupsFreeDestInfo;
    decltype(&::cupsFreeDests) cupsFreeDests;
    decltype(&::cupsFreeOptions) cupsFreeOptions;
    decltype(&::cupsGetDest) cupsGetDest;
    decltype(&::cupsGetDestMediaByIndex) cupsGetDestMediaByIndex;
    decltype(&::cupsGetDestMediaByName) cupsGetDestMediaByName;
    decltype(&::cupsGetDestMediaBySize) cupsGetDestMediaBySize;
    decltype(&::cupsGetDestMediaCount) cupsGetDestMediaCount;
    decltype(&::cupsGetDests2) cupsGetDests2;
    decltype(&::cupsGetOption) cupsGetOption;
    decltype(&::cupsLastErrorString) cupsLastErrorString;
    decltype(&::cupsLocalizeDestValue) cupsLocalizeDestValue;
    decltype(&::cupsServer) cupsServer;
    decltype(&::cupsSetPasswordCB2) cupsSetPasswordCB2;
    decltype(&::cupsStartDestDocument) cupsStartDestDocument;
    decltype(&::cupsWriteRequestData) cupsWriteRequestData;
    decltype(&::httpClose) httpClose;
    decltype(&::httpConnect2) httpConnect2;
    decltype(&::httpSetTimeout) httpSetTimeout;
    decltype(&::ippFindAttribute) ippFindAttribute;
    decltype(&::ippGetCollection) ippGetCollection;
    decltype(&::ippGetCount) ippGetCount;
    decltype(&::ippGetInteger) ippGetInteger;
    decltype(&::ippGetString) ippGetString;
    decltype(&::ippPort) ippPort;
};

// Throws Failure where the library is missing.
const CupsLibrary& Cups();

}  // namespace rv52
