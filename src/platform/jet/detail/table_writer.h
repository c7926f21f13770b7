#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/jet/detail/index_tree.h"
#include "platform/jet/detail/row_codec.h"

/// Filling a new table with rows that exist already: nothing is defaulted, converted or judged but the keys.
namespace zenvora::jet::detail {

/// The values of a row as their bytes, by position in the definition; nothing for Null. A Boolean that is
/// true is empty, a Memo or OLE value is its data wherever they are stored.
using StoredFields = std::vector<std::optional<std::span<const std::byte>>>;

/// Writes rows behind each other into a table that has none, so that a scan meets them in the order in which
/// they came. The caller has a transaction open and keeps others off the table until Finish.
class TableWriter {
  public:
    TableWriter(Pager& pager, PageAllocator& allocator, PageNumber definition);

    [[nodiscard]] const StoredDefinition& Definition() const noexcept { return stored_; }

    enum class Refusal { None, DuplicateKey, NullKey };
    struct Outcome {
        Refusal refusal = Refusal::None;
        std::size_t index = 0;  ///< whose key was refused
    };
    /// Faults: 20001 (a key text without a place in the sort order; `FailedIndex` tells where), 3047.
    Outcome Add(const StoredFields& fields);
    [[nodiscard]] std::optional<std::size_t> FailedIndex() const noexcept { return failedIndex_; }
    [[nodiscard]] std::uint32_t Rows() const noexcept { return rows_; }
    /// Bytes of rows and long values since the last call: when to commit.
    [[nodiscard]] std::size_t TakeWrittenBytes() noexcept { return std::exchange(written_, 0); }

    /// Writes the counts into the definition. The auto-number counter becomes `autoNumber` or the largest
    /// number in use.
    void Finish(std::uint32_t autoNumber, std::uint32_t increment);

  private:
    Outcome MakeKeys(const StoredFields& fields);
    void BuildRow(const StoredFields& fields, bool longValuesInline);
    RowId Place(std::span<const std::byte> row);
    void LeavePage();
    [[nodiscard]] IndexTree Tree(std::size_t index);

    Pager& pager_;
    PageAllocator& allocator_;
    PageNumber page_;
    StoredDefinition stored_;
    std::vector<std::vector<std::size_t>> keyPositions_;  ///< by index: positions of its columns
    std::vector<std::size_t> longPositions_;              ///< of the Memo and OLE columns
    std::optional<std::size_t> autoNumberPosition_;
    RowBuilder builder_;
    std::span<const std::byte> row_;
    std::vector<std::string> keys_;
    IndexEndsCache indexEnds_;
    std::vector<std::uint32_t> entries_, distinct_;
    std::optional<std::size_t> failedIndex_;  ///< set while its key is being built
    PageNumber current_ = 0;                  ///< where rows go; 0: nowhere yet
    std::uint32_t rows_ = 0, largest_ = 0;
    std::size_t written_ = 0;
};

}  // namespace zenvora::jet::detail
