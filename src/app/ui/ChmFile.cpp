#include "app/ui/ChmFile.h"

#include "platform/Failure.h"
#include "platform/Text.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <chm_lib.h>
#include <filesystem>

namespace rv52 {

namespace {

// A page or a picture; whatever claims to be larger comes from a damaged directory.
constexpr LONGUINT64 kLargestPart = 8U << 20;

// The build ends the file with this and the checksum of all before it. A damaged file is known by that: what
// reads it further on trusts its tables.
constexpr const char* kSeal = "SHA-256 ";
constexpr qsizetype kSealLength = 8 + 64 + 1;

bool IsWhole(const std::string& path) {
    QFile file(QFile::decodeName(path.c_str()));
    if (!file.open(QIODevice::ReadOnly)) return false;
    const auto content = file.readAll();
    const auto seal = content.right(kSealLength);
    const auto checksum = QCryptographicHash::hash(content.chopped(std::min(kSealLength, content.size())),
                                                   QCryptographicHash::Sha256);
    return seal == kSeal + checksum.toHex() + '\n';
}

struct Search {
    std::string extension;
    std::string found;
};

int Compare(chmFile*, chmUnitInfo* part, void* context) {
    auto& search = *static_cast<Search*>(context);
    const std::string name(part->path);
    if (!UpperCase(name).ends_with(search.extension)) return CHM_ENUMERATOR_CONTINUE;
    search.found = name;
    return CHM_ENUMERATOR_SUCCESS;
}

}  // namespace

void ChmFile::Close::operator()(chmFile* file) const {
    chm_close(file);
}

ChmFile::ChmFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw FileFailure("The help file " + path + " is not there.");
    if (IsWhole(path)) file_.reset(chm_open(path.c_str()));
    if (!file_) throw FileFailure("The help file " + path + " is damaged or cannot be read.");
}

std::optional<std::string> ChmFile::Read(const std::string& name) const {
    chmUnitInfo part{};
    if (chm_resolve_object(file_.get(), name.c_str(), &part) != CHM_RESOLVE_SUCCESS) return std::nullopt;
    if (part.length > kLargestPart) return std::nullopt;
    std::string content(part.length, '\0');
    auto* bytes = static_cast<unsigned char*>(static_cast<void*>(content.data()));
    const auto length = static_cast<LONGINT64>(part.length);
    if (chm_retrieve_object(file_.get(), &part, bytes, 0, length) != length) return std::nullopt;
    return content;
}

std::string ChmFile::FirstNamed(const std::string& extension) const {
    Search search{UpperCase(extension), {}};
    chm_enumerate(file_.get(), CHM_ENUMERATE_ALL, Compare, &search);
    return search.found;
}

}  // namespace rv52
