#include "cli/failure.h"

#include <algorithm>

#include "platform/text/number.h"
#include "platform/text/utf8.h"

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
        case fault::kUnsupported:
        case fault::kSourceFormat:
            return true;
        default:
            return false;
    }
}

std::string FaultLine(const Fault& fault, const std::string& file) {
    const Place& place = fault.place;
    std::string where;
    // What the description names itself is not said twice.
    const auto add = [&](const std::string& part) {
        if (part.empty() || fault.description.find(part) != std::string::npos) return;
        if (!where.empty()) where += ", ";
        where += part;
    };
    add(place.file.empty() ? file : place.file);
    if (place.line > 0) add("line " + text::IntegerText(place.line));
    if (place.record > 0) add("record " + text::IntegerText(place.record));
    if (place.page >= 0) add("page " + text::IntegerText(place.page));
    if (!place.column.empty()) add("column " + place.column);

    std::string line = where.empty() ? "" : where + ": ";
    line += fault.description;
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::replace(line.begin(), line.end(), '\r', ' ');
    if (!line.empty() && line.back() != '.') line += '.';
    return line + " (error " + text::IntegerText(fault.number) + ")";
}

std::string Shown(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace zenvora::cli
