#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/jet/detail/verify_table.h"

namespace zenvora::jet::detail {

/// Checks the tree of one index and compares its entries with the rows of its table.
class IndexCheck {
  public:
    IndexCheck(PageBook& book, TableCheck& table, PageNumber definition, std::size_t index, Spot spot);
    void Run();

  private:
    struct Leaf {
        PageNumber page = 0, previous = 0, next = 0;
    };
    /// A page of the tree, taken apart.
    struct Page {
        std::vector<std::byte> bytes;
        std::vector<std::size_t> ends;  // of the entries, in the entry area
        std::size_t prefix = 0;
        bool leaf = true;
    };

    void ReadOwnPages();
    /// Checks the tree below `page` and returns its last entry, nothing when there is none to be trusted.
    std::optional<std::string> Walk(PageNumber page, std::size_t depth);
    std::optional<std::string> WalkLeaf(PageNumber number, const Page& page, std::size_t depth);
    std::optional<std::string> WalkNode(PageNumber number, const Page& page, std::size_t depth);
    [[nodiscard]] std::optional<Page> Read(PageNumber number);
    void ReadEntry(const Page& page, std::size_t index, std::string& entry) const;
    void CheckLeafLinks();
    void CheckSiblings(const std::vector<PageNumber>& children);
    void MatchRow(PageNumber page, std::string_view entry);
    void FindMissingRows();
    /// The key of a row; nothing when the engine cannot work it out. `nulls` counts its Null columns.
    [[nodiscard]] std::optional<std::string> KeyOf(const TableCheck::Row& row, std::size_t& nulls);
    void Fail(PageNumber page, const std::string& sentence) { findings_.Error(spot_.On(page), sentence); }

    PageBook& book_;
    const Layout& layout_;
    Findings& findings_;
    TableCheck& table_;
    Spot spot_;
    PageNumber definition_;
    const StoredIndex& stored_;
    const IndexDefinition& index_;
    std::vector<std::size_t> positions_;  // of the index columns in the definition
    bool keysKnown_ = true;
    PageBook::User user_ = 0;
    std::optional<std::vector<PageNumber>> owned_;
    std::unordered_set<PageNumber> walked_;
    std::vector<Leaf> leaves_;
    std::size_t leafDepth_ = 0;
    std::string previous_;       // the last entry met, over all leaves
    std::vector<bool> matched_;  // by row: an entry names it
    std::size_t keysNotCompared_ = 0;
    bool broken_ = false;  // part of the tree was not seen: that entries are missing would say nothing new
};

}  // namespace zenvora::jet::detail
