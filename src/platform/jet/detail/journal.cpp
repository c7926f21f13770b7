#include "platform/jet/detail/journal.h"

#include <algorithm>
#include <array>

#include "platform/fault.h"
#include "platform/jet/detail/bytes.h"

namespace zenvora::jet::detail {

namespace {
constexpr char kMagic[8] = "ZVJRNL1";
constexpr std::size_t kHeaderBytes = 48;
constexpr std::size_t kRecordHeader = 16;
constexpr std::size_t kStretch = 512;  // what a disk writes whole
constexpr std::size_t kFlushAt = std::size_t{1} << 20;
constexpr std::size_t kLargestPage = 4096;

std::size_t RecordSize(std::size_t pageSize) {
    return kRecordHeader + pageSize / kStretch * 4 + pageSize;
}

std::uint32_t StretchSum(std::span<const std::byte> page, std::size_t stretch) {
    return static_cast<std::uint32_t>(Checksum(page.subspan(stretch * kStretch, kStretch)));
}

std::uint64_t RecordSum(std::span<const std::byte> record) {
    std::array<std::byte, 8> front{};
    std::copy_n(record.begin(), 8, front.begin());
    return Checksum(front) ^ Checksum(record.subspan(kRecordHeader)) * 3;
}

std::uint64_t IdentityOf(files::HostFile& database, std::size_t pageSize) {
    std::vector<std::byte> page(std::min<std::uint64_t>(pageSize, database.Size()));
    database.ReadAt(0, page);
    return Checksum(page);
}

/// A journal read back and found whole.
struct Sealed {
    std::size_t pageSize = 0;
    PageNumber before = 0, after = 0;
    std::size_t records = 0;
    std::uint64_t identity = 0;
    std::int64_t modified = 0;
};

std::optional<Sealed> ReadSealed(files::HostFile& journal) {
    const std::uint64_t size = journal.Size();
    if (size < kHeaderBytes) return std::nullopt;
    std::array<std::byte, kHeaderBytes> header{};
    journal.ReadAt(0, header);
    if (std::memcmp(header.data(), kMagic, sizeof kMagic) != 0) return std::nullopt;
    if (LoadAs<std::uint64_t>(&header[40]) != Checksum(std::span(header).first(40))) return std::nullopt;
    Sealed sealed;
    sealed.pageSize = U32(&header[8]);
    sealed.before = U32(&header[12]);
    sealed.after = U32(&header[16]);
    sealed.records = U32(&header[20]);
    sealed.identity = LoadAs<std::uint64_t>(&header[24]);
    sealed.modified = LoadAs<std::int64_t>(&header[32]);
    if ((sealed.pageSize != 2048 && sealed.pageSize != kLargestPage) ||
        size < kHeaderBytes + std::uint64_t{sealed.records} * RecordSize(sealed.pageSize)) {
        return std::nullopt;
    }
    return sealed;
}

/// Calls `visit` with every record; false when one of them does not match its checksum.
bool ForEachRecord(files::HostFile& journal, const Sealed& sealed,
                   const std::function<void(PageNumber, std::span<const std::byte> sums,
                                            std::span<const std::byte> image)>& visit) {
    std::vector<std::byte> record(RecordSize(sealed.pageSize));
    for (std::size_t i = 0; i < sealed.records; ++i) {
        journal.ReadAt(kHeaderBytes + std::uint64_t{i} * record.size(), record);
        if (LoadAs<std::uint64_t>(&record[8]) != RecordSum(record)) return false;
        const std::size_t sums = sealed.pageSize / kStretch * 4;
        visit(U32(record.data()), std::span<const std::byte>(record).subspan(kRecordHeader, sums),
              std::span<const std::byte>(record).subspan(kRecordHeader + sums));
    }
    return true;
}

/// True when the database is what this program left behind: every journaled stretch is the old or the new
/// one.
bool IsOurs(files::HostFile& journal, const Sealed& sealed, files::HostFile& database) {
    const std::uint64_t size = database.Size();
    const std::uint64_t before = std::uint64_t{sealed.before} * sealed.pageSize;
    const std::uint64_t after = std::uint64_t{sealed.after} * sealed.pageSize;
    if (size < before || size > std::max(before, after)) return false;
    const files::FileStamp stamp = database.Stamp();
    if (stamp.modified != 0 && stamp.modified < sealed.modified)
        return false;  // an older copy was put in its place
    if (sealed.before > 0 && IdentityOf(database, sealed.pageSize) != sealed.identity) return false;
    bool ours = true;
    std::vector<std::byte> page(sealed.pageSize);
    ForEachRecord(journal, sealed,
                  [&](PageNumber number, std::span<const std::byte> sums, std::span<const std::byte> image) {
                      if (!ours) return;
                      database.ReadAt(std::uint64_t{number} * sealed.pageSize, page);
                      for (std::size_t stretch = 0; stretch < sealed.pageSize / kStretch; ++stretch) {
                          const auto now =
                              std::span<const std::byte>(page).subspan(stretch * kStretch, kStretch);
                          const auto old = image.subspan(stretch * kStretch, kStretch);
                          if (!std::equal(now.begin(), now.end(), old.begin()) &&
                              StretchSum(page, stretch) != U32(sums.data() + 4 * stretch)) {
                              ours = false;
                          }
                      }
                  });
    return ours;
}

void PutBack(files::HostFile& journal, const Sealed& sealed, files::HostFile& database) {
    ForEachRecord(journal, sealed,
                  [&](PageNumber number, std::span<const std::byte>, std::span<const std::byte> image) {
                      database.WriteAt(std::uint64_t{number} * sealed.pageSize, image);
                  });
    database.Truncate(std::uint64_t{sealed.before} * sealed.pageSize);
    database.Sync();
}
}  // namespace

std::uint64_t Checksum(std::span<const std::byte> bytes) noexcept {
    std::uint64_t sum = 0x9E3779B97F4A7C15U ^ bytes.size();
    std::size_t at = 0;
    for (; at + 8 <= bytes.size(); at += 8) {
        sum ^= LoadAs<std::uint64_t>(bytes.data() + at);
        sum *= 0xFF51AFD7ED558CCDU;
        sum ^= sum >> 32;
    }
    for (; at < bytes.size(); ++at)
        sum = (sum ^ U8(bytes.data() + at)) * 0x100000001B3U;
    return sum ^ sum >> 29;
}

std::filesystem::path Journal::PathOf(const std::filesystem::path& database) {
    std::filesystem::path path = database;
    path += "-journal";
    return path;
}

Journal::Journal(files::HostDisk& disk, const std::filesystem::path& database)
    : disk_(disk), path_(PathOf(database)) {
    // Made at once: a folder that takes no new file is found out before anything is changed.
    if (disk.Exists(path_)) {
        file_ = disk.Open(path_, files::OpenMode::ReadWrite);
    } else {
        file_ = disk.Open(path_, files::OpenMode::CreateNew);
        disk.SyncFolder(path_.parent_path());
    }
}

Journal::~Journal() {
    try {
        const bool empty = file_->Size() == 0;
        file_.reset();
        if (empty) disk_.Remove(path_);
    } catch (const Fault&) {
        // An empty journal that stays behind harms nobody.
    }
}

void Journal::Begin(files::HostFile& database, std::size_t pageSize, PageNumber before, PageNumber after,
                    std::size_t records) {
    pageSize_ = pageSize;
    end_ = 0;
    buffer_.assign(kHeaderBytes, std::byte{0});
    std::byte* const header = buffer_.data();
    std::memcpy(header, kMagic, sizeof kMagic);
    PutU32(header + 8, pageSize);
    PutU32(header + 12, before);
    PutU32(header + 16, after);
    PutU32(header + 20, records);
    if (before > 0) StoreAs(header + 24, IdentityOf(database, pageSize));
    StoreAs(header + 32, database.Stamp().modified);
    StoreAs(header + 40, Checksum({header, 40}));
    header_ = buffer_;
}

void Journal::Add(PageNumber page, std::span<const std::byte> oldImage, std::span<const std::byte> newImage) {
    const std::size_t begin = buffer_.size();
    buffer_.resize(begin + RecordSize(pageSize_));
    std::byte* const record = buffer_.data() + begin;
    PutU32(record, page);
    const std::size_t stretches = pageSize_ / kStretch;
    for (std::size_t i = 0; i < stretches; ++i)
        PutU32(record + kRecordHeader + 4 * i, StretchSum(newImage, i));
    std::memcpy(record + kRecordHeader + 4 * stretches, oldImage.data(), pageSize_);
    StoreAs(record + 8, RecordSum({record, RecordSize(pageSize_)}));
    if (buffer_.size() >= kFlushAt) Flush();
}

void Journal::Flush() {
    file_->WriteAt(end_, buffer_);
    end_ += buffer_.size();
    buffer_.clear();
}

void Journal::Seal() {
    Flush();
    file_->Sync();
}

void Journal::Clear() {
    buffer_.clear();
    // The header first, and that for good: should it fail, the records are still there for Undo.
    file_->WriteAt(0, std::array<std::byte, kHeaderBytes>{});
    file_->Sync();
    file_->Truncate(0);
}

void Journal::Undo(files::HostFile& database) {
    file_->WriteAt(0, header_);
    file_->Sync();
    if (const auto sealed = ReadSealed(*file_)) PutBack(*file_, *sealed, database);
    Clear();
}

namespace {
/// The journal when it has been sealed, and what its header says.
std::optional<Sealed> FindSealed(files::HostDisk& disk, const std::filesystem::path& path,
                                 std::unique_ptr<files::HostFile>& journal, files::OpenMode mode) {
    if (!disk.Exists(path)) return std::nullopt;
    journal = disk.Open(path, mode);
    const auto sealed = ReadSealed(*journal);
    if (!sealed) return std::nullopt;
    const bool whole = ForEachRecord(*journal, *sealed, [](PageNumber, auto, auto) {});
    return whole ? sealed : std::nullopt;
}
}  // namespace

Journal::Recovery Journal::Recover(files::HostDisk& disk, const std::filesystem::path& database,
                                   files::HostFile& file) {
    const std::filesystem::path path = PathOf(database);
    std::unique_ptr<files::HostFile> journal;
    const auto sealed = FindSealed(disk, path, journal, files::OpenMode::ReadWrite);
    if (!journal) return {};
    if (!sealed) {
        // Never sealed, so nothing was written to the database yet.
        journal->Truncate(0);
        journal->Sync();
        return {};
    }
    if (IsOurs(*journal, *sealed, file)) {
        PutBack(*journal, *sealed, file);
        journal->Truncate(0);
        journal->Sync();
        return {Outcome::RolledBack, {}};
    }
    journal.reset();
    std::filesystem::path kept;
    for (int number = 1; kept.empty() || disk.Exists(kept); ++number) {
        kept = path;
        kept += "-" + std::to_string(number) + ".kept";
    }
    disk.Rename(path, kept);
    disk.SyncFolder(path.parent_path());
    return {Outcome::KeptAside, kept};
}

std::optional<Journal::OldPages> Journal::Peek(files::HostDisk& disk, const std::filesystem::path& database,
                                               files::HostFile& file) {
    std::unique_ptr<files::HostFile> journal;
    const auto sealed = FindSealed(disk, PathOf(database), journal, files::OpenMode::ReadOnly);
    if (!sealed || !IsOurs(*journal, *sealed, file)) return std::nullopt;
    OldPages old;
    old.pageCount = sealed->before;
    ForEachRecord(*journal, *sealed,
                  [&](PageNumber page, std::span<const std::byte>, std::span<const std::byte> image) {
                      old.images.emplace_back(page, std::vector<std::byte>(image.begin(), image.end()));
                  });
    return old;
}

bool Journal::IsOvertaken(files::HostDisk& disk, const std::filesystem::path& database,
                          files::HostFile& file) {
    std::unique_ptr<files::HostFile> journal;
    const auto sealed = FindSealed(disk, PathOf(database), journal, files::OpenMode::ReadOnly);
    return sealed && !IsOurs(*journal, *sealed, file);
}

}  // namespace zenvora::jet::detail
