#include "platform/files/host_fault.h"

#include <cerrno>
#include <string>
#include <system_error>

namespace zenvora::files {
namespace {

struct Cause {
    int number = 0;
    std::string_view what;
    std::string_view advice;
};

bool FolderExists(const std::filesystem::path& path) {
    std::error_code ignored;
    const std::filesystem::path folder = path.parent_path();
    return folder.empty() || std::filesystem::is_directory(folder, ignored);
}

Cause CauseOf(int error, const std::filesystem::path& path) {
    switch (error) {
        case ENOENT:
            if (FolderExists(path)) return {fault::kFileNotFound, "there is no such file", "Check the name."};
            return {fault::kPathNotFound, "its folder does not exist", "Check the path."};
        case ENOTDIR:
            return {fault::kPathNotFound, "a part of its path is a file", "Check the path."};
        case EISDIR:
            return {fault::kPathAccess, "it is a directory", "Name a file."};
        case EACCES:
        case EPERM:
            return {fault::kPathAccess, "access is denied", "Check its permissions."};
        case EROFS:
            return {fault::kPathAccess, "the disk is read-only", "Choose another place."};
        case ENAMETOOLONG:
        case ELOOP:
        case EINVAL:
        case EILSEQ:
            return {fault::kPathAccess, "the system cannot use this name", "Choose another name."};
        case ENOTEMPTY:
            return {fault::kPathAccess, "it is a directory that is not empty", "Choose another name."};
        case EEXIST:
            return {fault::kFileExists, "it exists already", "Choose another name or remove it first."};
        case EBUSY:
        case ETXTBSY:
        case EAGAIN:
            return {fault::kPermissionDenied, "another program uses it",
                    "Close the other program and try again."};
        case ENOSPC:
        case EDQUOT:
            return {fault::kDiskFull, "the disk is full", "Make room and try again."};
        case EFBIG:
            return {fault::kDiskFull, "the file would become larger than the system allows",
                    "Choose another disk."};
        case ENXIO:
        case ENODEV:
            return {fault::kDeviceUnavailable, "the device is not available", "Check the device."};
        case EIO:
            return {fault::kDeviceIo, "the device reported an error", "Check the disk."};
        default:
            return {fault::kDeviceIo, {}, "Try again."};
    }
}

}  // namespace

Fault HostFault(int error, std::string_view action, const std::filesystem::path& path) {
    const Cause cause = CauseOf(error, path);
    std::string text = "Cannot ";
    text.append(action).append(" \"").append(path.string()).append("\": ");
    text += cause.what.empty() ? std::generic_category().message(error) : std::string(cause.what);
    text.append(". ").append(cause.advice);
    Place place;
    place.file = path.string();
    return {cause.number, std::move(text), std::move(place)};
}

}  // namespace zenvora::files
