#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/files/host_file.h"
#include "platform/jet/detail/layout.h"

namespace zenvora::jet::detail {

/// The rollback journal of one database file: NAME-journal beside it.
///
/// Before pages of the database are overwritten, their old images go here, and this file is synced. When the
/// new pages are on the device too, the journal is emptied, its header first; that moment is the commit. A
/// journal with content therefore means a commit that was broken off, and the database is brought back to the
/// state before it.
///
/// The file, little-endian:
///   0   8  "ZVJRNL1" and a zero
///   8   4  page size
///   12  4  pages of the database before the commit
///   16  4  pages behind it
///   20  4  number of records
///   24  8  checksum of page 0, which a commit never changes: the identity of the database file
///   32  8  the database's time of modification before the commit, nanoseconds
///   40  8  checksum of bytes 0 to 39
///   48     records: u32 page, u32 zero, u64 checksum of the record without this field, then for each 512
///   bytes of the
///          new page a u32 checksum, then the old page
/// The checksums of the new page tell, stretch by stretch, what this program wrote from what another one did:
/// only a database in which every journaled stretch is either the old or the new one is rolled back.
class Journal {
  public:
    Journal(files::HostDisk& disk, const std::filesystem::path& database);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    [[nodiscard]] static std::filesystem::path PathOf(const std::filesystem::path& database);

    /// Begins a commit that takes the database from `before` to `after` pages; `pages` will be overwritten.
    void Begin(files::HostFile& database, std::size_t pageSize, PageNumber before, PageNumber after,
               std::size_t records);
    void Add(PageNumber page, std::span<const std::byte> oldImage, std::span<const std::byte> newImage);
    /// Returns when everything added is on the device.
    void Seal();
    /// The commit is done, or was undone.
    void Clear();

    enum class Outcome {
        Nothing,  ///< no journal, or one that was never sealed: the database was not touched
        RolledBack,
        KeptAside,  ///< another program changed the database since: both files were kept, under `keptAs`
    };
    struct Recovery {
        Outcome outcome = Outcome::Nothing;
        std::filesystem::path keptAs;
    };
    /// Looks for a journal with content and rolls its database back, or keeps it aside.
    static Recovery Recover(files::HostDisk& disk, const std::filesystem::path& database,
                            files::HostFile& file);

    struct OldPages {
        PageNumber pageCount = 0;
        std::vector<std::pair<PageNumber, std::vector<std::byte>>> images;
    };
    /// For readers that must not write: what Recover would put back; nothing when there is nothing to roll
    /// back.
    [[nodiscard]] static std::optional<OldPages> Peek(files::HostDisk& disk,
                                                      const std::filesystem::path& database,
                                                      files::HostFile& file);
    /// Whether there is a sealed journal that Recover would keep aside.
    [[nodiscard]] static bool IsOvertaken(files::HostDisk& disk, const std::filesystem::path& database,
                                          files::HostFile& file);
    /// Puts the old pages of the sealed journal back into the database, and its length.
    void Undo(files::HostFile& database);

  private:
    void Flush();

    files::HostDisk& disk_;
    std::filesystem::path path_;
    std::unique_ptr<files::HostFile> file_;
    std::size_t pageSize_ = 0;
    std::uint64_t end_ = 0;
    std::vector<std::byte> buffer_;
    std::vector<std::byte> header_;  // of the commit in hand
};

/// A checksum of 64 bits, quick, for finding torn and foreign bytes; no protection against intent.
[[nodiscard]] std::uint64_t Checksum(std::span<const std::byte> bytes) noexcept;

}  // namespace zenvora::jet::detail
