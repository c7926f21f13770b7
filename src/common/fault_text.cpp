#include "common/fault_text.h"

#include <algorithm>

#include "platform/text/number.h"

namespace zenvora::common {
namespace {

/// True when the text names the place: "line 1" is not named by "line 12".
bool Names(const std::string& text, const std::string& place) {
    for (std::size_t at = text.find(place); at != std::string::npos; at = text.find(place, at + 1)) {
        const std::size_t behind = at + place.size();
        const bool goesOn = behind < text.size() && text[behind] >= '0' && text[behind] <= '9';
        if (!goesOn) return true;
    }
    return false;
}

}  // namespace

std::string FaultLine(const Fault& fault, const std::string& file) {
    const Place& place = fault.place;
    std::string where;
    // What the description names itself is not said twice.
    const auto add = [&](const std::string& part) {
        if (part.empty() || Names(fault.description, part)) return;
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

}  // namespace zenvora::common
