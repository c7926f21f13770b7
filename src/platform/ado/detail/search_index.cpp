#include "platform/ado/detail/search_index.h"

#include <algorithm>

#include "platform/ado/detail/text_match.h"
#include "platform/jet/database.h"

namespace zenvora::ado::detail {

SearchIndex::SearchIndex(std::vector<std::uint32_t> records, TextOf textOf)
    : records_(std::move(records)), textOf_(std::move(textOf)) {
    const auto before = [this](std::uint32_t a, std::uint32_t b) { return Before(a, b); };
    // A Recordset in key order, the usual one, needs no sorting.
    if (!std::is_sorted(records_.begin(), records_.end(), before))
        std::sort(records_.begin(), records_.end(), before);
}

bool SearchIndex::Before(std::uint32_t a, std::uint32_t b) const {
    const int order = jet::CompareGeneral(textOf_(a), textOf_(b));
    return order != 0 ? order < 0 : a < b;
}

std::optional<std::uint32_t> SearchIndex::Find(std::string_view text) const {
    const auto found = std::lower_bound(records_.begin(), records_.end(), text,
                                        [this](std::uint32_t record, std::string_view wanted) {
                                            return jet::CompareGeneral(textOf_(record), wanted) < 0;
                                        });
    if (found == records_.end() || !SameText(textOf_(*found), text)) return std::nullopt;
    return *found;
}

void SearchIndex::Add(std::uint32_t record) {
    const auto place = std::lower_bound(records_.begin(), records_.end(), record,
                                        [this](std::uint32_t a, std::uint32_t b) { return Before(a, b); });
    records_.insert(place, record);
}

void SearchIndex::Remove(std::uint32_t record) {
    const auto place = std::lower_bound(records_.begin(), records_.end(), record,
                                        [this](std::uint32_t a, std::uint32_t b) { return Before(a, b); });
    if (place != records_.end() && *place == record) records_.erase(place);
}

}  // namespace zenvora::ado::detail
