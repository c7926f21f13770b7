#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace zenvora::ado::detail {

/// Finds records by the text of one field, for runs that look up key after key (a merge does so for every
/// record of its source). The records in the order of their texts; equal texts in the order of the records. 4
/// bytes a record.
class SearchIndex {
  public:
    using TextOf = std::function<std::string_view(std::uint32_t record)>;

    SearchIndex(std::vector<std::uint32_t> records, TextOf textOf);

    /// The first of the records whose text is the same.
    [[nodiscard]] std::optional<std::uint32_t> Find(std::string_view text) const;
    void Add(std::uint32_t record);
    /// To be called while the record still has the text that it was added with.
    void Remove(std::uint32_t record);

  private:
    [[nodiscard]] bool Before(std::uint32_t a, std::uint32_t b) const;

    std::vector<std::uint32_t> records_;
    TextOf textOf_;
};

}  // namespace zenvora::ado::detail
