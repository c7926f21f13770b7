#include "platform/ini/profiles.h"

#include <utility>

#include "platform/fault.h"
#include "platform/files/whole_file.h"

namespace zenvora::ini {

Profiles::Known& Profiles::Read(const std::filesystem::path& path) {
    std::string bytes;
    try {
        bytes = files::ReadWholeFile(path, *disk_);
    } catch (const Fault& fault) {
        known_.erase(path);
        if (fault.number != fault::kFileNotFound) throw;
    }
    Known& known = known_[path];
    if (known.bytes != bytes) {
        known.document = Document(bytes);
        known.bytes = std::move(bytes);
    }
    return known;
}

const Document& Profiles::Look(const std::filesystem::path& path) {
    try {
        return Read(path).document;
    } catch (const Fault&) {
        static const Document empty;
        return empty;
    }
}

bool Profiles::Change(const std::filesystem::path& path, const std::function<bool(Document&)>& change) {
    Known* known = nullptr;
    try {
        known = &Read(path);
    } catch (const Fault&) {
        return false;
    }
    try {
        if (!change(known->document)) return true;
    } catch (...) {
        known_.erase(path);
        throw;
    }
    try {
        std::string bytes = known->document.Bytes();
        files::WriteWholeFile(path, bytes, files::Replaced::Gone, *disk_);
        known->bytes = std::move(bytes);
        return true;
    } catch (const Fault&) {
        known_.erase(path);
        return false;
    }
}

}  // namespace zenvora::ini
