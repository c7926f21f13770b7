#include "platform/jet/detail/index_tree.h"

#include <algorithm>

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kRowIdSize = 4;
constexpr std::size_t kChildSize = 4;
constexpr std::size_t kMaxDepth = 20;  // three levels hold millions of entries

const char* Chars(const std::byte* bytes) {
    return reinterpret_cast<const char*>(bytes);
}

void AppendChild(std::string& entry, PageNumber child) {
    for (int shift = 24; shift >= 0; shift -= 8)
        entry.push_back(static_cast<char>(child >> shift & 0xFF));
}
PageNumber ChildOf(const std::string& entry) {
    return U32BigEndian(reinterpret_cast<const std::byte*>(entry.data() + entry.size() - kChildSize));
}
std::string WithoutChild(const std::string& entry) {
    return entry.substr(0, entry.size() - kChildSize);
}

bool IsLeaf(const std::byte* page) {
    return U8(page) == kIndexLeaf;
}

void SetMark(const Layout& layout, std::byte* page, std::size_t end) {
    std::byte& byte = page[layout.maskAt + end / 8];
    byte |= static_cast<std::byte>(1U << (end % 8));
}

/// Clears the marks behind `from` and sets those of entries `first` and up.
void RewriteMarks(const Layout& layout, std::byte* page, std::size_t from, const std::uint16_t* ends,
                  std::size_t first, std::size_t count) {
    std::byte* const mask = page + layout.maskAt;
    const std::size_t byte = (from + 1) / 8;
    mask[byte] &= static_cast<std::byte>((1U << ((from + 1) % 8)) - 1);
    std::memset(mask + byte + 1, 0, layout.maskSize - byte - 1);
    for (std::size_t i = first; i < count; ++i)
        SetMark(layout, page, ends[i]);
}
}  // namespace

void IndexTree::FormatLeaf(Pager& pager, PageNumber number, PageNumber definition) {
    const Layout& layout = pager.Format();
    std::byte* const page = pager.Write(number);
    std::memset(page, 0, layout.pageSize);
    PutU8(page, kIndexLeaf);
    PutU8(page + 1, 1);
    PutU16(page + 2, layout.EntryArea());
    PutU32(page + 4, definition);
}

PageNumber IndexTree::Next(const std::byte* page) const {
    return U32(page + layout_->nextAt);
}
PageNumber IndexTree::Tail(const std::byte* page) const {
    return U32(page + layout_->tailAt);
}

IndexEnds* IndexEndsCache::Find(const Layout& layout, PageNumber number, const std::byte* page) noexcept {
    Remembered* const place = places_[number % kPlaces].get();
    if (place == nullptr || place->page != number) return nullptr;
    const std::size_t size = layout.maskAt + layout.maskSize - layout.prefixAt;
    const bool same =
        place->bits[0] == page[0] && std::memcmp(place->bits + 1, page + layout.prefixAt, size) == 0;
    return same ? &place->ends : nullptr;
}

IndexEnds& IndexEndsCache::Place(PageNumber number) {
    std::unique_ptr<Remembered>& place = places_[number % kPlaces];
    if (place == nullptr) place.reset(new Remembered);
    place->page = 0;
    return place->ends;
}

void IndexEndsCache::Remember(const Layout& layout, PageNumber number, const std::byte* page) noexcept {
    Remembered& place = *places_[number % kPlaces];
    place.page = number;
    place.bits[0] = page[0];
    std::memcpy(place.bits + 1, page + layout.prefixAt, layout.maskAt + layout.maskSize - layout.prefixAt);
}

void IndexTree::CheckPage(PageNumber number, const std::byte* page) const {
    if ((U8(page) != kIndexLeaf && U8(page) != kIndexNode) || U32(page + 4) != definition_)
        throw pager_->Damaged(number, "a page of an index of the table is expected here");
}

IndexTree::Ends& IndexTree::CachedEnds(PageNumber number, Ends& spare) const {
    if (cache_ == nullptr) {
        ReadEnds(number, spare);
        return spare;
    }
    const std::byte* const page = pager_->Read(number);
    CheckPage(number, page);
    if (Ends* const known = cache_->Find(*layout_, number, page)) return *known;
    Ends& ends = cache_->Place(number);
    ReadEnds(number, ends);
    cache_->Remember(*layout_, number, page);
    return ends;
}

void IndexTree::ReadEnds(PageNumber number, Ends& ends) const {
    const std::byte* const page = pager_->Read(number);
    CheckPage(number, page);
    ends.count = 0;
    const std::byte* const mask = page + layout_->maskAt;
    const auto collect = [&](std::uint64_t word, std::size_t base) {
        while (word != 0) {
            if (ends.count == std::size(ends.at))
                throw pager_->Damaged(number, "an index page has too many entries");
            ends.at[ends.count++] =
                static_cast<std::uint16_t>(base + static_cast<std::size_t>(std::countr_zero(word)));
            word &= word - 1;
        }
    };
    std::size_t at = 0;
    for (; at + 8 <= layout_->maskSize; at += 8) {
        if (const auto word = LoadAs<std::uint64_t>(mask + at); word != 0) collect(word, at * 8);
    }
    for (; at < layout_->maskSize; ++at)
        collect(U8(mask + at), at * 8);
    ends.prefix = layout_->prefixSize == 1 ? U8(page + layout_->prefixAt) : U16(page + layout_->prefixAt);
    const std::size_t trailer = kRowIdSize + (IsLeaf(page) ? 0 : kChildSize);
    std::size_t begin = 0;
    for (std::size_t i = 0; i < ends.count; ++i) {
        const std::size_t size = ends.at[i] - begin + (i == 0 ? 0 : ends.prefix);
        if (size < trailer || (i == 0 && ends.prefix > size)) {
            throw pager_->Damaged(number, "an index page has an entry that is too short");
        }
        begin = ends.at[i];
    }
    if (begin > layout_->EntryArea())
        throw pager_->Damaged(number, "the entries of an index page run over its end");
}

void IndexTree::AppendEntry(const std::byte* page, const Ends& ends, std::size_t index,
                            std::string& out) const {
    const char* const area = Chars(page + layout_->entriesAt);
    if (index > 0) out.append(area, ends.prefix);
    const std::size_t begin = index == 0 ? 0 : ends.at[index - 1];
    out.append(area + begin, ends.at[index] - begin);
}

int IndexTree::CompareEntry(const std::byte* page, const Ends& ends, std::size_t index, std::size_t cut,
                            std::string_view wanted) const {
    if (wanted.empty()) return 1;
    const char* const area = Chars(page + layout_->entriesAt);
    if (index > 0 && ends.prefix > 0) {
        const std::size_t shared = std::min(ends.prefix, wanted.size());
        if (const int order = std::memcmp(area, wanted.data(), shared)) return order;
        if (wanted.size() < ends.prefix) return 1;
        wanted.remove_prefix(ends.prefix);
    }
    const std::size_t begin = index == 0 ? 0 : ends.at[index - 1];
    const std::size_t size = ends.at[index] - begin - cut;
    const std::size_t shared = std::min(size, wanted.size());
    if (const int order = std::memcmp(area + begin, wanted.data(), shared)) return order;
    return size < wanted.size() ? -1 : size > wanted.size() ? 1 : 0;
}

std::size_t IndexTree::Search(const std::byte* page, const Ends& ends, std::size_t cut,
                              std::string_view wanted) const {
    std::size_t low = 0;
    std::size_t high = ends.count;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (CompareEntry(page, ends, middle, cut, wanted) < 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

PageNumber IndexTree::Child(PageNumber number, const Ends& ends, std::size_t index) const {
    const std::byte* const page = pager_->Read(number);
    const PageNumber child = index < ends.count
                                 ? U32BigEndian(page + layout_->entriesAt + ends.at[index] - kChildSize)
                                 : Tail(page);
    if (child == 0 || child >= pager_->PageCount())
        throw pager_->Damaged(number, "an index page points nowhere");
    return child;
}

PageNumber IndexTree::Descend(std::string_view wanted, std::vector<Step>* path) const {
    PageNumber number = root_;
    Ends spare;
    for (std::size_t depth = 0; depth < kMaxDepth; ++depth) {
        const std::byte* const page = pager_->Read(number);
        if (IsLeaf(page)) return number;
        const Ends& ends = CachedEnds(number, spare);
        std::size_t index = Search(page, ends, kChildSize, wanted);
        if (index == ends.count && Tail(page) == 0) {
            if (ends.count == 0) throw pager_->Damaged(number, "an index page has no children");
            --index;
        }
        if (path != nullptr) path->push_back({number, index});
        number = Child(number, ends, index);
    }
    throw pager_->Damaged(number, "the pages of an index run in a circle");
}

std::optional<std::string> IndexTree::LowerBound(std::string_view wanted) const {
    Ends spare;
    std::size_t steps = 0;
    for (PageNumber leaf = Descend(wanted, nullptr); leaf != 0;) {
        const Ends& ends = CachedEnds(leaf, spare);
        const std::byte* const page = pager_->Read(leaf);
        const std::size_t index = Search(page, ends, 0, wanted);
        if (index < ends.count) {
            std::string entry;
            AppendEntry(page, ends, index, entry);
            return entry;
        }
        leaf = Next(page);
        if (++steps > pager_->PageCount())
            throw pager_->Damaged(leaf, "the pages of an index run in a circle");
    }
    return std::nullopt;
}

void IndexTree::Scan(const std::function<bool(std::string_view)>& visit) const {
    Ends ends;
    std::string entry;
    std::size_t steps = 0;
    for (PageNumber leaf = Descend({}, nullptr); leaf != 0;) {
        ReadEnds(leaf, ends);
        const std::byte* const page = pager_->Read(leaf);
        if (!IsLeaf(page)) throw pager_->Damaged(leaf, "a leaf of an index is expected here");
        for (std::size_t i = 0; i < ends.count; ++i) {
            entry.clear();
            AppendEntry(page, ends, i, entry);
            if (!visit(entry)) return;
        }
        leaf = Next(page);
        if (++steps > pager_->PageCount())
            throw pager_->Damaged(leaf, "the pages of an index run in a circle");
    }
}

IndexTree::Node IndexTree::ReadNode(PageNumber number) const {
    Ends ends;
    ReadEnds(number, ends);
    const std::byte* const page = pager_->Read(number);
    Node node;
    node.leaf = IsLeaf(page);
    node.previous = U32(page + layout_->previousAt);
    node.next = Next(page);
    node.tail = node.leaf ? 0 : Tail(page);
    node.level = U8(page + layout_->levelAt);
    node.entries.reserve(ends.count + 1);
    for (std::size_t i = 0; i < ends.count; ++i)
        AppendEntry(page, ends, i, node.entries.emplace_back());
    // A common beginning of the first and the last one is one of all only in this order.
    if (!std::is_sorted(node.entries.begin(), node.entries.end()))
        throw pager_->Damaged(number, "the entries of an index page are out of order");
    return node;
}

namespace {
struct Measure {
    std::size_t prefix = 0, size = 0;
};
/// Without a prefix where that fits; else with the longest one that the keys share.
Measure MeasureEntries(std::span<const std::string> entries, bool leaf, std::size_t area) {
    Measure measure;
    for (const std::string& entry : entries)
        measure.size += entry.size();
    if (measure.size <= area || entries.size() < 2) return measure;
    const std::size_t trailer = kRowIdSize + (leaf ? 0 : kChildSize);
    const std::string& first = entries.front();
    const std::string& last = entries.back();
    const std::size_t limit = std::min(first.size(), last.size()) - trailer;
    while (measure.prefix < limit && first[measure.prefix] == last[measure.prefix])
        ++measure.prefix;
    measure.size -= measure.prefix * (entries.size() - 1);
    return measure;
}
}  // namespace

bool IndexTree::Fits(const Node& node) const {
    return MeasureEntries(node.entries, node.leaf, layout_->EntryArea()).size <= layout_->EntryArea();
}

void IndexTree::WriteNode(PageNumber number, const Node& node) {
    const Measure measure = MeasureEntries(node.entries, node.leaf, layout_->EntryArea());
    std::byte* const page = pager_->Write(number);
    std::memset(page, 0, layout_->pageSize);
    PutU8(page, node.leaf ? kIndexLeaf : kIndexNode);
    PutU8(page + 1, 1);
    PutU16(page + 2, layout_->EntryArea() - measure.size);
    PutU32(page + 4, definition_);
    PutU32(page + layout_->previousAt, node.previous);
    PutU32(page + layout_->nextAt, node.next);
    PutU32(page + layout_->tailAt, node.tail);
    PutU8(page + layout_->prefixAt, static_cast<unsigned>(measure.prefix & 0xFF));
    if (layout_->prefixSize == 2)
        PutU8(page + layout_->prefixAt + 1, static_cast<unsigned>(measure.prefix >> 8));
    PutU8(page + layout_->levelAt, node.level);
    std::size_t at = 0;
    for (std::size_t i = 0; i < node.entries.size(); ++i) {
        const std::string_view entry = std::string_view(node.entries[i]).substr(i == 0 ? 0 : measure.prefix);
        std::memcpy(page + layout_->entriesAt + at, entry.data(), entry.size());
        at += entry.size();
        SetMark(*layout_, page, at);
    }
}

PageNumber IndexTree::NewPage() {
    const PageNumber page = allocator_->Allocate();
    owned_.Add(page, *allocator_);
    return page;
}

void IndexTree::SetLink(PageNumber number, std::size_t at, PageNumber to) {
    const std::byte* const page = pager_->Read(number);
    if ((U8(page) != kIndexLeaf && U8(page) != kIndexNode) || U32(page + 4) != definition_)
        throw pager_->Damaged(number, "a page of an index is linked with one that is none of it");
    PutU32(pager_->Write(number) + at, to);
}

bool IndexTree::InsertInPlace(PageNumber number, Ends& ends, std::size_t index, std::string_view entry) {
    if (ends.count == std::size(ends.at)) return false;
    const std::byte* const old = pager_->Read(number);
    const std::size_t used = ends.count == 0 ? 0 : ends.at[ends.count - 1];
    if (ends.prefix > 0) {
        // The first entry carries the prefix of all: one in front of it, or one that does not share it, needs
        // the page to be laid out anew.
        if (index == 0 || entry.size() < ends.prefix ||
            std::memcmp(old + layout_->entriesAt, entry.data(), ends.prefix) != 0) {
            return false;
        }
        entry.remove_prefix(ends.prefix);
    }
    if (used + entry.size() > layout_->EntryArea()) return false;
    std::byte* const page = pager_->Write(number);
    const std::size_t begin = index == 0 ? 0 : ends.at[index - 1];
    std::byte* const place = page + layout_->entriesAt + begin;
    std::memmove(place + entry.size(), place, used - begin);
    std::memcpy(place, entry.data(), entry.size());
    for (std::size_t i = ends.count; i > index; --i)
        ends.at[i] = static_cast<std::uint16_t>(ends.at[i - 1] + entry.size());
    ends.at[index] = static_cast<std::uint16_t>(begin + entry.size());
    ++ends.count;
    RewriteMarks(*layout_, page, begin, ends.at, index, ends.count);
    if (cache_ != nullptr) cache_->Remember(*layout_, number, page);
    PutU16(page + 2, layout_->EntryArea() - used - entry.size());
    return true;
}

bool IndexTree::Insert(std::string_view entry) {
    if (entry.size() + kChildSize > layout_->EntryArea()) {
        throw Fault{fault::kUnsupported, "the values of an index are too long to be sorted: shorten them",
                    Place{pager_->Path().string()}};
    }
    std::vector<Step> path;
    const PageNumber leaf = Descend(entry, &path);
    Ends spare;
    Ends& ends = CachedEnds(leaf, spare);
    const std::byte* const page = pager_->Read(leaf);
    const std::size_t index = Search(page, ends, 0, entry);
    if (index < ends.count && CompareEntry(page, ends, index, 0, entry) == 0) {
        throw pager_->Damaged(leaf, "an index names a row that is not in the table");
    }
    const bool last = index == ends.count;
    const PageNumber next = Next(page);
    if (last && next != 0) {
        Ends behind;
        ReadEnds(next, behind);
        if (behind.count > 0 && CompareEntry(pager_->Read(next), behind, 0, 0, entry) < 0) {
            throw Fault{
                fault::kUnsupported,
                "an index has leaves that its upper pages do not know: compact the Databook in Access first",
                Place{pager_->Path().string(), 0, 0, static_cast<long>(leaf)}};
        }
    }
    const std::string_view key = entry.substr(0, entry.size() - kRowIdSize);
    const auto sameKey = [&](std::size_t neighbour) {
        std::string other;
        AppendEntry(page, ends, neighbour, other);
        return std::string_view(other).substr(0, other.size() - kRowIdSize) == key;
    };
    const bool distinct = !(index > 0 && sameKey(index - 1)) && !(index < ends.count && sameKey(index));

    if (InsertInPlace(leaf, ends, index, entry)) {
        if (last) ReplaceChildKey(std::move(path), entry);
        return distinct;
    }
    Node node = ReadNode(leaf);
    node.entries.insert(node.entries.begin() + static_cast<std::ptrdiff_t>(index), std::string(entry));
    if (last) {
        // First the upper pages learn the new end of this leaf, then it may be split: the half that stays
        // keeps it.
        ReplaceChildKey(path, entry);
        path.clear();
        static_cast<void>(Descend(entry, &path));
    }
    SplitIfNeeded(leaf, std::move(node), path, last && next == 0);
    return distinct;
}

void IndexTree::SplitIfNeeded(PageNumber page, Node node, std::vector<Step>& path, bool appended) {
    if (Fits(node)) {
        WriteNode(page, node);
        return;
    }
    if (page == root_) {
        // The root keeps its page: its content moves down by one and is split there.
        const PageNumber moved = NewPage();
        Node root;
        root.leaf = false;
        root.level = static_cast<std::uint8_t>(node.leaf ? 1 : node.level + 1);
        root.tail = moved;
        WriteNode(root_, root);
        path = {Step{root_, 0}};
        page = moved;
    }
    // Parts go to new pages in front, so that the old page stays the last child where it was. One part mostly
    // suffices; but entries that shared a beginning take more room when one joins them that does not share
    // it.
    std::vector<std::string> parentEntries;
    while (!Fits(node))
        parentEntries.push_back(SplitFront(page, node, appended));
    WriteNode(page, node);

    const Step parentStep = path.back();
    path.pop_back();
    Node parent = ReadNode(parentStep.page);
    const bool atEnd = parentStep.child >= parent.entries.size();
    parent.entries.insert(parent.entries.begin() + static_cast<std::ptrdiff_t>(parentStep.child),
                          std::make_move_iterator(parentEntries.begin()),
                          std::make_move_iterator(parentEntries.end()));
    SplitIfNeeded(parentStep.page, std::move(parent), path, appended && atEnd);
}

std::size_t IndexTree::CutOf(const Node& node, bool appended) const {
    std::size_t cut = node.entries.size() - 1;
    if (!appended) {
        std::size_t total = 0;
        for (const std::string& entry : node.entries)
            total += entry.size();
        std::size_t sum = 0;
        for (cut = 0; cut + 1 < node.entries.size() && sum < total / 2; ++cut)
            sum += node.entries[cut].size();
    }
    cut = std::clamp<std::size_t>(cut, 1, node.entries.size() - 1);
    const std::span<const std::string> entries(node.entries);
    const std::size_t area = layout_->EntryArea();
    while (cut > 1 && MeasureEntries(entries.first(cut), node.leaf, area).size > area)
        --cut;
    return cut;
}

std::string IndexTree::SplitFront(PageNumber page, Node& node, bool appended) {
    if (node.entries.size() < 2) throw pager_->Damaged(page, "an entry of an index does not fit its page");
    const std::size_t cut = CutOf(node, appended);
    const PageNumber added = NewPage();
    Node front;
    front.leaf = node.leaf;
    front.level = node.level;
    front.previous = node.previous;
    front.next = page;
    const auto middle = node.entries.begin() + static_cast<std::ptrdiff_t>(cut);
    front.entries.assign(std::make_move_iterator(node.entries.begin()), std::make_move_iterator(middle));
    node.entries.erase(node.entries.begin(), middle);
    node.previous = added;
    if (!Fits(front)) throw pager_->Damaged(page, "an entry of an index does not fit its page");
    std::string parentEntry = node.leaf ? front.entries.back() : WithoutChild(front.entries.back());
    AppendChild(parentEntry, added);
    if (!node.leaf) {
        CutSiblingLinks(front, node);
        if (front.entries.size() > 1) {
            front.tail = ChildOf(front.entries.back());
            front.entries.pop_back();
        }
    }
    if (front.previous != 0) SetLink(front.previous, layout_->nextAt, added);
    WriteNode(added, front);
    return parentEntry;
}

void IndexTree::CutSiblingLinks(const Node& left, const Node& right) {
    // Nodes are linked with the children of their own parent only.
    const PageNumber before = ChildOf(left.entries.back());
    const PageNumber behind = right.entries.empty() ? right.tail : ChildOf(right.entries.front());
    if (U8(pager_->Read(before)) == kIndexNode) SetLink(before, layout_->nextAt, 0);
    if (behind != 0 && U8(pager_->Read(behind)) == kIndexNode) SetLink(behind, layout_->previousAt, 0);
}

void IndexTree::ReplaceChildKey(std::vector<Step> path, std::string_view lastEntry) {
    while (!path.empty()) {
        const Step step = path.back();
        path.pop_back();
        Ends ends;
        ReadEnds(step.page, ends);
        const std::byte* const page = pager_->Read(step.page);
        const bool tailTaken = step.child >= ends.count;
        const bool lastChild = tailTaken || (step.child + 1 == ends.count && Tail(page) == 0);
        if (!tailTaken) {
            if (CompareEntry(page, ends, step.child, kChildSize, lastEntry) != 0) {
                Node node = ReadNode(step.page);
                std::string entry(lastEntry);
                AppendChild(entry, ChildOf(node.entries[step.child]));
                node.entries[step.child] = std::move(entry);
                std::vector<Step> above = path;
                SplitIfNeeded(step.page, std::move(node), above, false);
            }
        }
        if (!lastChild) return;
        // A split below may have changed the pages above: find the way anew.
        std::vector<Step> fresh;
        static_cast<void>(Descend(lastEntry, &fresh));
        const auto here = std::find_if(fresh.begin(), fresh.end(),
                                       [&](const Step& each) { return each.page == step.page; });
        path.assign(fresh.begin(), here);
    }
}

bool IndexTree::Remove(std::string_view entry) {
    std::vector<Step> path;
    const PageNumber leaf = Descend(entry, &path);
    Ends ends;
    ReadEnds(leaf, ends);
    const std::byte* page = pager_->Read(leaf);
    const std::size_t index = Search(page, ends, 0, entry);
    if (index == ends.count || CompareEntry(page, ends, index, 0, entry) != 0) return false;

    Node node = ReadNode(leaf);
    node.entries.erase(node.entries.begin() + static_cast<std::ptrdiff_t>(index));
    WriteNode(leaf, node);
    if (node.entries.empty()) {
        if (leaf == root_) return true;
        if (node.previous != 0) SetLink(node.previous, layout_->nextAt, node.next);
        if (node.next != 0) SetLink(node.next, layout_->previousAt, node.previous);
        RemoveChild(std::move(path));
        owned_.Remove(leaf);
        allocator_->Free(leaf, 0);
    } else if (index == node.entries.size()) {
        ReplaceChildKey(std::move(path), node.entries.back());
    }
    return true;
}

void IndexTree::RemoveChild(std::vector<Step> path) {
    const Step step = path.back();
    path.pop_back();
    Node node = ReadNode(step.page);
    bool lastChanged = true;
    if (step.child >= node.entries.size()) {
        node.tail = 0;
        if (node.entries.size() > 1) {
            node.tail = ChildOf(node.entries.back());
            node.entries.pop_back();
        }
    } else {
        node.entries.erase(node.entries.begin() + static_cast<std::ptrdiff_t>(step.child));
        lastChanged = node.tail == 0 && step.child == node.entries.size();
    }
    if (node.entries.empty() && node.tail == 0) {
        if (step.page == root_) {
            FormatLeaf(*pager_, root_, definition_);
            return;
        }
        if (node.previous != 0) SetLink(node.previous, layout_->nextAt, node.next);
        if (node.next != 0) SetLink(node.next, layout_->previousAt, node.previous);
        RemoveChild(std::move(path));
        owned_.Remove(step.page);
        allocator_->Free(step.page, 0);
        return;
    }
    if (node.entries.empty()) {
        // One child alone stands as an ordinary entry.
        std::string entry = LastEntryUnder(node.tail);
        AppendChild(entry, node.tail);
        node.entries.push_back(std::move(entry));
        node.tail = 0;
    }
    WriteNode(step.page, node);
    if (lastChanged && !path.empty()) ReplaceChildKey(std::move(path), LastEntryUnder(step.page));
}

std::string IndexTree::LastEntryUnder(PageNumber page) const {
    for (std::size_t depth = 0; depth < kMaxDepth; ++depth) {
        const Node node = ReadNode(page);
        if (node.entries.empty() && (node.leaf || node.tail == 0))
            throw pager_->Damaged(page, "a page of an index is empty");
        if (node.leaf) return node.entries.back();
        page = node.tail != 0 ? node.tail : ChildOf(node.entries.back());
    }
    throw pager_->Damaged(page, "the pages of an index run in a circle");
}

}  // namespace zenvora::jet::detail
