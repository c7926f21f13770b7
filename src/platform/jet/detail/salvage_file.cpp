#include "platform/jet/detail/salvage_file.h"

#include <algorithm>
#include <set>

#include "platform/jet/detail/header.h"
#include "platform/jet/detail/text_codec.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kPiece = 2048;  // the smaller page size
constexpr std::size_t kProbe = 4096;
constexpr std::size_t kPageHeader = 8;
constexpr std::size_t kMaxDefinitionPages = 64;
constexpr std::size_t kMaxColumns = 255;

/// The file in whole pages, readable everywhere.
class PaddedFile final : public files::HostFile {
  public:
    explicit PaddedFile(std::unique_ptr<files::HostFile> file) : file_(std::move(file)) {
        real_ = file_->Size();
        size_ = (real_ + kProbe - 1) / kProbe * kProbe;
    }
    void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
        const std::uint64_t there =
            offset < real_ ? std::min<std::uint64_t>(bytes.size(), real_ - offset) : 0;
        const auto part = bytes.first(static_cast<std::size_t>(there));
        std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(there), bytes.end(), std::byte{0});
        try {
            if (!part.empty()) file_->ReadAt(offset, part);
            return;
        } catch (const Fault&) {
            // A disk that is going bad: what can be had of it, piece by piece.
        }
        for (std::size_t at = 0; at < part.size(); at += kPiece) {
            const auto piece = part.subspan(at, std::min(kPiece, part.size() - at));
            try {
                file_->ReadAt(offset + at, piece);
            } catch (const Fault&) {
                std::fill(piece.begin(), piece.end(), std::byte{0});
            }
        }
    }
    void WriteAt(std::uint64_t, std::span<const std::byte>) override { Refuse(); }
    std::uint64_t Size() override { return size_; }
    void Truncate(std::uint64_t) override { Refuse(); }
    void Sync() override {}

  private:
    [[noreturn]] static void Refuse() { throw Fault{fault::kReadOnly, "a damaged file is only read"}; }

    std::unique_ptr<files::HostFile> file_;
    std::uint64_t real_ = 0, size_ = 0;
};

bool IsDefinition(const std::byte* page, const Layout& layout) {
    if (U8(page) != kDefinitionPage) return false;
    if (layout.version == kJet4.version) return U32(page + 12) == kDefinitionMark;
    return U8(page + 2) == 'V' && U8(page + 3) == 'C';
}

/// The version that the pages themselves speak of: of each there are at least four definitions.
std::optional<Layout> Probe(files::HostFile& file) {
    std::vector<std::byte> page(kProbe);
    const std::uint64_t size = file.Size();
    std::size_t newer = 0;
    std::size_t older = 0;
    for (std::uint64_t at = 0; at + kProbe <= size; at += kProbe) {
        file.ReadAt(at, page);
        if (IsDefinition(page.data(), kJet4)) ++newer;
        for (std::size_t half = 0; half < kProbe; half += kJet3.pageSize) {
            if (IsDefinition(page.data() + half, kJet3)) ++older;
        }
    }
    if (newer == 0 && older == 0) return std::nullopt;
    return newer >= older ? kJet4 : kJet3;
}

Layout LayoutOf(files::HostFile& file, const std::filesystem::path& path) {
    try {
        return CheckHeader(file, path, false);
    } catch (const Fault& fault) {
        if (fault.number == fault::kPassword) throw;
        std::byte name[16];
        if (file.Size() >= kProbe) {
            file.ReadAt(4, name);
            if (std::memcmp(name, "Standard ACE DB", sizeof name) == 0) throw;
        }
        // An encoded file shows no pages; one with a damaged header does.
        if (const auto layout = Probe(file)) return *layout;
        if (fault.number != fault::kDamaged) throw;
        throw Fault{fault::kNotADatabook,
                    "nothing in the file looks like a part of a database: there is nothing to save",
                    fault.place};
    }
}
}  // namespace

SalvageSource OpenForSalvage(const std::filesystem::path& path, files::HostDisk& disk) {
    auto file = std::make_shared<PaddedFile>(disk.Open(path, files::OpenMode::ReadOnly));
    Layout layout = LayoutOf(*file, path);
    const std::uint16_t stated = layout.codePage;
    // The one that can be read. A damaged number must not cost the texts, most of which are plain ASCII.
    if (layout.codePage != 0) layout.codePage = kWindows1252;
    auto pager = std::make_unique<Pager>(file, path, layout, true);
    try {
        // A commit that was broken off is no damage: its journal still has the pages.
        if (const auto old = Journal::Peek(disk, path, *file)) pager->SetOverlay(*old);
    } catch (const Fault&) {
        // A journal that cannot be read leaves the pages as they are.
    }
    return {std::move(pager), stated};
}

std::optional<SalvagedDefinition> SalvageDefinition(Pager& pager, PageNumber first) {
    const Layout& layout = pager.Format();
    if (first >= pager.PageCount() || !IsDefinition(pager.Read(first), layout)) return std::nullopt;
    SalvagedDefinition salvaged;
    StoredDefinition& stored = salvaged.definition;
    std::vector<std::byte>& bytes = stored.bytes;
    for (PageNumber page = first; page != 0 && page < pager.PageCount();) {
        const std::byte* const data = pager.Read(page);
        const bool known = std::find(stored.chain.begin(), stored.chain.end(), page) != stored.chain.end();
        if (U8(data) != kDefinitionPage || known || stored.chain.size() >= kMaxDefinitionPages) break;
        bytes.insert(bytes.end(), data + (stored.chain.empty() ? 0 : kPageHeader), data + layout.pageSize);
        stored.chain.push_back(page);
        page = U32(data + 4);
    }
    const std::byte* const fixed = bytes.data();
    stored.rowCount = U32(fixed + layout.rowCountAt);
    stored.autoNumber = U32(fixed + layout.autoNumberAt);
    stored.table.systemTable = U8(fixed + layout.typeAt) == 'S';
    stored.maxColumns = U16(fixed + layout.maxColumnsAt);
    stored.variableCount = U16(fixed + layout.variableCountAt);
    stored.ownedMap.value = U32(fixed + layout.ownedMapAt);
    const std::size_t columnCount = U16(fixed + layout.columnCountAt);
    const std::size_t realCount = U32(fixed + layout.realCountAt);
    if (columnCount == 0 || columnCount > kMaxColumns || stored.maxColumns > kMaxColumns ||
        columnCount > stored.maxColumns || stored.variableCount > stored.maxColumns ||
        realCount > kMaxColumns)
        return std::nullopt;
    std::size_t at = layout.variablePartAt + realCount * layout.indexCountBlock;
    if (at + columnCount * layout.columnBlock > bytes.size()) return std::nullopt;
    std::set<std::uint16_t> numbers;
    std::set<std::uint16_t> variables;
    for (std::size_t i = 0; i < columnCount; ++i, at += layout.columnBlock) {
        const ColumnDefinition& column = stored.table.columns.emplace_back(ReadColumn(layout, fixed + at));
        const bool good =
            column.number < stored.maxColumns && numbers.insert(column.number).second &&
            (column.fixedLength ? column.fixedOffset + std::size_t{column.byteLength} <= layout.maxRow
                                : column.variableIndex < stored.variableCount &&
                                      variables.insert(column.variableIndex).second);
        if (!good) return std::nullopt;
    }
    bool readable = true;
    for (std::size_t i = 0; i < columnCount; ++i) {
        ColumnDefinition& column = stored.table.columns[i];
        if (readable && at + layout.nameSizeSize <= bytes.size()) {
            const std::size_t size = layout.nameSizeSize == 1 ? U8(fixed + at) : U16(fixed + at);
            at += layout.nameSizeSize;
            if (size > 0 && size <= 128 && at + size <= bytes.size()) {
                DecodeText({fixed + at, size}, layout.codePage, column.name);
                at += size;
                continue;
            }
        }
        readable = false;
        column.name = "Column " + std::to_string(i + 1);
        ++salvaged.namesLost;
    }
    return salvaged;
}

}  // namespace zenvora::jet::detail
