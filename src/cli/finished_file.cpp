#include "cli/finished_file.h"

#include <string>

#include "cli/failure.h"
#include "platform/files/host_file.h"
#include "platform/files/whole_file.h"
#include "platform/jet/database.h"
#include "platform/text/utf8.h"

namespace zenvora::cli {

namespace fs = std::filesystem;

namespace {

/// A link stays a link: what it points at is the file in question.
fs::path BehindLinks(const fs::path& path) {
    std::error_code ignored;
    return fs::is_symlink(path, ignored) ? fs::weakly_canonical(path) : path;
}

/// A Databook that is about to be replaced is first brought to rest: a commit that a crash broke off is
/// undone, so that what is kept of it is whole. One that another program works on is not replaced. Any other
/// file, and damage, is no obstacle.
void SettleOldDatabook(const fs::path& path) {
    try {
        static_cast<void>(jet::Database::Open(path, jet::Database::Access::ReadWrite));
    } catch (const Fault& fault) {
        if (fault.number == fault::kInUse) throw;
    }
}

fs::path FolderOf(const fs::path& path) {
    const fs::path folder = path.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

}  // namespace

FinishedFile::FinishedFile(const fs::path& target, bool replace) : target_(BehindLinks(target)) {
    std::error_code ignored;
    const auto status = fs::status(target_, ignored);
    Place place;
    place.file = Shown(target);
    if (fs::exists(status)) {
        if (!fs::is_regular_file(status))
            throw Fault{fault::kPathAccess, "This is no file. Name another Databook.", place};
        if (!replace) {
            throw Fault{fault::kFileExists,
                        Shown(target_.filename()) +
                            " exists already. Name another file, or give --force to replace it; "
                            "it is then kept beside the new one as " +
                            Shown(target_.filename()) + ".bak.",
                        place};
        }
        SettleOldDatabook(target_);
    } else if (!fs::is_directory(FolderOf(target_), ignored)) {
        throw Fault{fault::kPathNotFound, "There is no such folder. Make it first, or name another Databook.",
                    place};
    }
    int attempt = 0;
    do {
        path_ = target_;
        path_ += ".part" + std::to_string(++attempt);
    } while (fs::exists(fs::symlink_status(path_, ignored)));
}

FinishedFile::~FinishedFile() {
    std::error_code ignored;
    if (!finished_) fs::remove(path_, ignored);
}

void FinishedFile::Make(const std::function<void(const fs::path&)>& make) const {
    try {
        make(path_);
    } catch (Fault& fault) {
        fault.description = text::ReplaceAll(fault.description, Shown(path_), Shown(target_));
        if (fault.place.file == Shown(path_)) fault.place.file = Shown(target_);
        throw;
    }
}

void FinishedFile::Finish() {
    auto& disk = files::SystemDisk();
    // A copy rather than a rename: the file itself is never away, whenever the program stops.
    if (disk.Exists(target_)) files::CopyWholeFile(target_, files::BakPath(target_));
    disk.Rename(path_, target_);
    finished_ = true;
    disk.SyncFolder(FolderOf(target_));
}

}  // namespace zenvora::cli
