#include "databook/upgrade_copy.h"

#include <string>

#include "platform/files/whole_file.h"

namespace zenvora::databook {
namespace {

namespace fs = std::filesystem;

/// A link stays a link: what lies beside a Databook lies beside the file itself.
fs::path BehindLinks(const fs::path& path) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    return error ? path : real;
}

fs::path NoteOf(fs::path databook) {
    databook += ".upgrading";
    return databook;
}

std::string NoteText(const fs::path& copy) {
    const files::FileStamp stamp = files::SystemDisk().Open(copy, files::OpenMode::ReadOnly)->Stamp();
    return "The upgrade of this Databook has begun and not ended. The file as it was before lies beside "
           "it:\n" +
           copy.filename().string() + " " + std::to_string(stamp.size) + " " +
           std::to_string(stamp.modified) + "\n";
}

}  // namespace

UpgradeCopy::UpgradeCopy(const fs::path& databook)
    : databook_(BehindLinks(databook)), copy_(files::BakPath(databook_)), note_(NoteOf(databook_)) {}

void UpgradeCopy::Begin(bool keepCopy) const {
    if (!keepCopy) files::CopyWholeFile(databook_, copy_);
    files::WriteWholeFile(note_, NoteText(copy_));
}

void UpgradeCopy::End() const {
    files::SystemDisk().Remove(note_);
    files::SystemDisk().SyncFolder(note_.parent_path());
}

bool UpgradeCopy::IsUnfinished() const {
    return files::SystemDisk().Exists(note_);
}

bool UpgradeCopy::CanRestore() const {
    return files::SystemDisk().Exists(copy_) && files::ReadWholeFile(note_) == NoteText(copy_);
}

void UpgradeCopy::Restore() const {
    files::CopyWholeFile(copy_, databook_);
    End();
}

}  // namespace zenvora::databook
