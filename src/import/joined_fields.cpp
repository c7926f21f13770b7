#include "import/joined_fields.h"

#include <algorithm>

#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

constexpr std::string_view kPlus = " + ";

/// More parts than any address has: a longer name is none.
constexpr std::size_t kMostParts = 64;

/// Where a part of a name can begin: at its start, and behind every separator.
std::vector<std::size_t> PartStarts(std::string_view name) {
    std::vector<std::size_t> starts{0};
    for (std::size_t plus = name.find(kPlus); plus != std::string_view::npos && starts.size() <= kMostParts;
         plus = name.find(kPlus, plus + 1))
        starts.push_back(plus + kPlus.size());
    return starts;
}

/// Splits a name into columns; none when it does not work out. A field's own name may hold the separator: the
/// longest name that is a column counts, unless the rest does not work out.
std::vector<int> Split(const SourceGrid& grid, std::string_view name) {
    const std::vector<std::size_t> starts = PartStarts(name);
    if (starts.size() > kMostParts) return {};
    struct Part {
        int column = -1;  ///< of the field that begins here; -1: from here on it does not work out
        std::size_t next = 0;
    };
    // From the end, so that it is known what follows a field when the field is looked for.
    std::vector<Part> parts(starts.size());
    for (std::size_t at = starts.size(); at-- > 0;) {
        for (std::size_t next = starts.size(); next > at && parts[at].column < 0; --next) {
            const bool isLast = next == starts.size();
            if (!isLast && parts[next].column < 0) continue;
            const std::size_t end = isLast ? name.size() : starts[next] - kPlus.size();
            if (end <= starts[at]) continue;
            parts[at] = {grid.FindColumn(name.substr(starts[at], end - starts[at])), next};
        }
    }
    std::vector<int> columns;
    for (std::size_t at = 0; at < parts.size() && parts[at].column >= 0; at = parts[at].next)
        columns.push_back(parts[at].column);
    return columns;
}

}  // namespace

std::string JoinedName(const std::vector<std::string>& names) {
    std::string joined;
    for (const std::string& name : names)
        joined.append(joined.empty() ? "" : kPlus).append(name);
    return joined;
}

std::optional<std::vector<int>> JoinedColumns(const SourceGrid& grid, std::string_view name) {
    if (name.find(kPlus) == std::string_view::npos || grid.FindColumn(name) >= 0) return std::nullopt;
    std::vector<int> columns = Split(grid, name);
    if (columns.size() < 2) return std::nullopt;
    return columns;
}

int AddJoinedColumn(SourceGrid& grid, std::string_view name) {
    const std::optional<std::vector<int>> columns = JoinedColumns(grid, name);
    if (!columns) return -1;
    std::vector<std::string> texts{std::string(name)};
    texts.reserve(static_cast<std::size_t>(grid.Rows()));
    for (int row = 1; row < grid.Rows(); ++row) {
        std::string& text = texts.emplace_back();
        for (const int col : *columns) {
            const std::string_view part = text::TrimView(grid.TextMatrix(row, col));
            if (part.empty()) continue;
            if (!text.empty()) text.push_back(' ');
            text.append(part);
        }
    }
    // Not behind the last column: an address that stands last in the source is loaded without its ADDRESS.
    const int place = columns->front();
    grid.InsertColumn(place, texts);
    return place;
}

}  // namespace zenvora::importing
