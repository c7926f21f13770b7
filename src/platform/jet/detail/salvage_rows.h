#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/jet/detail/stored_rows.h"

namespace zenvora::jet::detail {

/// Told of what a salvage cannot save.
struct SalvageListener {
    /// A row, or all of a page when `row` is -1.
    std::function<void(PageNumber page, int row, const std::string& reason)> lost;
    /// A value of a row that is saved all the same.
    std::function<void(PageNumber page, int row, const std::string& reason)> cut;
};

/// Reads the rows of one table of a damaged file, page by page. Never faults for damage and never runs in a
/// circle.
class RowSalvage : private FieldReader {
  public:
    /// All must outlive it. `definitionPage` is what the table's pages name as their owner.
    RowSalvage(Pager& pager, const StoredDefinition& table, PageNumber definitionPage,
               const SalvageListener& listener);

    using Visitor = std::function<void(PageNumber page, int row, const StoredFields&)>;
    /// Calls `visit` with each row that can be read of a page of the table.
    void ReadPage(PageNumber page, const Visitor& visit);
    /// Rows that had moved away from a page that is lost: their bytes are there, but nothing names them. To
    /// be called behind the last page, and only when pages of the table are lost: else such bytes are those
    /// of deleted rows.
    void ReadStrays(const Visitor& visit);

  private:
    struct Span {
        std::size_t begin = 0, end = 0;
    };
    std::vector<std::byte> LongValue(std::size_t column, PageNumber page,
                                     std::span<const std::byte> stored) override;
    /// Takes out what cannot be a value of its column: the new file shall be sound.
    void MendValues(StoredFields& fields);
    void MendText(std::size_t column, std::optional<std::span<const std::byte>>& field);
    void Give(PageNumber home, int homeRow, PageNumber page, std::span<const std::byte> bytes,
              const Visitor& visit);
    void Follow(PageNumber home, int homeRow, std::uint32_t pointer, const Visitor& visit);
    [[nodiscard]] std::optional<Span> Extent(const std::byte* page, unsigned row) const;
    [[nodiscard]] unsigned CountSlots(const std::byte* page) const;
    [[nodiscard]] bool IsBlank(const RowShape& row) const;
    [[nodiscard]] bool IsWhole(std::span<const std::byte> bytes) const;

    const SalvageListener& listener_;
    PageNumber definitionPage_;
    std::set<std::uint32_t> targets_;      ///< rows that a moved row named
    std::set<std::uint32_t> hidden_;       ///< rows that a moved row should name
    std::vector<std::size_t> lostValues_;  ///< long values of the row that are lost whole
    std::vector<std::string> cuts_;
    std::vector<std::vector<std::byte>> mended_;
};

}  // namespace zenvora::jet::detail
