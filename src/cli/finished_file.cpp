#include "cli/finished_file.h"

#include <string>

#include "cli/failure.h"
#include "platform/files/host_file.h"
#include "platform/text/utf8.h"

namespace zenvora::cli {

namespace fs = std::filesystem;

namespace {

fs::path WithSuffix(const fs::path& path, const std::string& suffix) {
    fs::path result = path;
    result += suffix;
    return result;
}

/// A link stays a link: what it points at is the file in question.
fs::path BehindLinks(const fs::path& path) {
    std::error_code ignored;
    return fs::is_symlink(path, ignored) ? fs::weakly_canonical(path) : path;
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
            throw Fault{
                fault::kFileExists,
                "The file exists already. Name another one, or give --force to replace it; it is then kept "
                "beside the new one as " +
                    Shown(target_.filename()) + ".bak.",
                place};
        }
    } else if (!fs::is_directory(FolderOf(target_), ignored)) {
        throw Fault{fault::kPathNotFound, "There is no such folder. Make it first, or name another Databook.",
                    place};
    }
    int attempt = 0;
    do {
        path_ = WithSuffix(target_, ".part" + std::to_string(++attempt));
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
    const fs::path backup = WithSuffix(target_, ".bak");
    const bool replaces = disk.Exists(target_);
    if (replaces) disk.Rename(target_, backup);
    try {
        disk.Rename(path_, target_);
    } catch (...) {
        if (replaces) disk.Rename(backup, target_);
        throw;
    }
    finished_ = true;
    disk.SyncFolder(FolderOf(target_));
}

}  // namespace zenvora::cli
