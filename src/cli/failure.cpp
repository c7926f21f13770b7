#include "cli/failure.h"

namespace zenvora::cli {

bool IsFileFault(const Fault& fault) noexcept {
    switch (fault.number) {
        case fault::kFileNotFound:
        case fault::kDeviceIo:
        case fault::kFileExists:
        case fault::kDiskFull:
        case fault::kDeviceUnavailable:
        case fault::kPermissionDenied:
        case fault::kDiskNotReady:
        case fault::kPathAccess:
        case fault::kPathNotFound:
        case fault::kRecordLocked:
        case fault::kInUse:
        case fault::kReadOnly:
        case fault::kNotADatabook:
        case fault::kDamaged:
        case fault::kPassword:
        case fault::kSourceFormat:
            return true;
        // Without a file it is the value or the statement that asks for more than the engine does.
        case fault::kUnsupported:
            return !fault.place.file.empty();
        default:
            return false;
    }
}

}  // namespace zenvora::cli
