#include "platform/files/host_path.h"

#include <cerrno>
#include <sys/stat.h>

#include "platform/files/host_fault.h"

namespace zenvora::files {
namespace {

/// False when nothing stands at the path.
bool Look(const std::filesystem::path& path, struct stat& status) {
    if (::stat(path.c_str(), &status) == 0) return true;
    const int error = errno;
    if (error == ENOENT || error == ENOTDIR) return false;
    throw HostFault(error, "look at", path);
}

}  // namespace

bool FileExists(const std::filesystem::path& path) {
    struct stat status {};
    return Look(path, status) && !S_ISDIR(status.st_mode) && status.st_size > 0;
}

bool PathExists(const std::filesystem::path& path) {
    struct stat status {};
    return Look(path, status);
}

void MakeHostDirectory(const std::filesystem::path& path) {
    if (::mkdir(path.c_str(), 0777) == 0) return;
    Fault failure = HostFault(errno, "make the directory", path);
    // The old platform knows one number for a directory that cannot be made where it is.
    if (failure.number == fault::kFileExists) failure.number = fault::kPathAccess;
    if (failure.number == fault::kFileNotFound) failure.number = fault::kPathNotFound;
    throw failure;
}

}  // namespace zenvora::files
