#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/detail/usage_map.h"

namespace zenvora::jet::detail {

/// The ends of the entries of a page, counted from the start of its entry area.
struct IndexEnds {
    std::uint16_t at[905];
    std::size_t count = 0;
    std::size_t prefix = 0;
};

/// Where the entries of the index pages read last end. A page says it by one bit for each byte, so that to
/// count them out takes longer than to search them. What is remembered is compared with the page's own bits
/// before it is believed: nobody needs to say when a page has changed.
class IndexEndsCache {
  public:
    /// One page, if it is still as remembered.
    [[nodiscard]] IndexEnds* Find(const Layout& layout, PageNumber number, const std::byte* page) noexcept;
    /// A place for the ends of a page, valid until the next call. Remember says that they are those of
    /// `page`.
    [[nodiscard]] IndexEnds& Place(PageNumber number);
    void Remember(const Layout& layout, PageNumber number, const std::byte* page) noexcept;

  private:
    static constexpr std::size_t kPlaces = 64;
    struct Remembered {
        IndexEnds ends;
        PageNumber page = 0;
        std::byte bits[464];  // the type, and the page from its prefix length to the end of its mask
    };
    std::unique_ptr<Remembered> places_[kPlaces];
};

/// The B-tree of one index. An entry is the key bytes followed by the row identity (key_codec.h); entries are
/// unique and ordered by their bytes. The root keeps its page for life.
class IndexTree {
  public:
    /// `cache` may serve all indexes of a table; without one every page is read anew.
    IndexTree(Pager& pager, PageAllocator& allocator, PageNumber definition, PageNumber root, UsageMap owned,
              IndexEndsCache* cache = nullptr)
        : pager_(&pager),
          layout_(&pager.Format()),
          allocator_(&allocator),
          definition_(definition),
          root_(root),
          owned_(owned),
          cache_(cache) {}

    /// The first entry that is not below `wanted` (a key, or a key and row identity).
    [[nodiscard]] std::optional<std::string> LowerBound(std::string_view wanted) const;
    /// Calls `visit` with every entry in order until it returns false.
    void Scan(const std::function<bool(std::string_view)>& visit) const;

    /// Adds an entry. Returns true when no entry with the same key stood beside it (a distinct key was
    /// added).
    bool Insert(std::string_view entry);
    /// Removes an entry; false when it was not there.
    bool Remove(std::string_view entry);

    /// Makes `page` an empty leaf of the table.
    static void FormatLeaf(Pager& pager, PageNumber page, PageNumber definition);

  private:
    struct Node {
        bool leaf = true;
        PageNumber previous = 0, next = 0, tail = 0;
        std::uint8_t level = 0;
        std::vector<std::string>
            entries;  ///< whole, without prefix compression; in a node with the child behind
    };
    /// One step down the tree: a node and which of its children was taken (entries.size() for the tail).
    struct Step {
        PageNumber page = 0;
        std::size_t child = 0;
    };
    using Ends = IndexEnds;

    void ReadEnds(PageNumber page, Ends& ends) const;
    /// The same, from the cache when there is one: valid until the next call. `spare` is used without one.
    [[nodiscard]] Ends& CachedEnds(PageNumber page, Ends& spare) const;
    void CheckPage(PageNumber number, const std::byte* page) const;
    [[nodiscard]] PageNumber Next(const std::byte* page) const;
    [[nodiscard]] PageNumber Tail(const std::byte* page) const;
    void AppendEntry(const std::byte* page, const Ends& ends, std::size_t index, std::string& out) const;
    [[nodiscard]] int CompareEntry(const std::byte* page, const Ends& ends, std::size_t index,
                                   std::size_t cut, std::string_view wanted) const;
    /// Index of the first entry not below `wanted`; `cut` bytes at an entry's end are left out of the
    /// comparison.
    [[nodiscard]] std::size_t Search(const std::byte* page, const Ends& ends, std::size_t cut,
                                     std::string_view wanted) const;
    [[nodiscard]] PageNumber Descend(std::string_view wanted, std::vector<Step>* path) const;
    [[nodiscard]] PageNumber Child(PageNumber page, const Ends& ends, std::size_t index) const;

    [[nodiscard]] Node ReadNode(PageNumber page) const;
    void WriteNode(PageNumber page, const Node& node);
    [[nodiscard]] bool Fits(const Node& node) const;
    /// False when the page must be laid out anew. Keeps `ends` right.
    bool InsertInPlace(PageNumber page, Ends& ends, std::size_t index, std::string_view entry);
    void SplitIfNeeded(PageNumber page, Node node, std::vector<Step>& path, bool appended);
    /// Moves the first entries of a page that is too full to a new page in front of it; returns the entry for
    /// the parent.
    std::string SplitFront(PageNumber page, Node& node, bool appended);
    /// How many entries such a page gives away: about half of them, or all but the last when it grows at its
    /// end.
    [[nodiscard]] std::size_t CutOf(const Node& node, bool appended) const;
    void ReplaceChildKey(std::vector<Step> path, std::string_view lastEntry);
    void RemoveChild(std::vector<Step> path);
    /// Sets the link of a page to a neighbour, at nextAt or previousAt. Fault 3049: it is no page of this
    /// table's indexes, and would be destroyed.
    void SetLink(PageNumber page, std::size_t at, PageNumber to);
    void CutSiblingLinks(const Node& left, const Node& right);
    [[nodiscard]] std::string LastEntryUnder(PageNumber page) const;
    [[nodiscard]] PageNumber NewPage();

    Pager* pager_;
    const Layout* layout_;
    PageAllocator* allocator_;
    PageNumber definition_;
    PageNumber root_;
    UsageMap owned_;
    IndexEndsCache* cache_;
};

}  // namespace zenvora::jet::detail
