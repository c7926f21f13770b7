#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/fault.h"
#include "platform/files/host_file.h"
#include "platform/jet/detail/file_guard.h"
#include "platform/jet/detail/journal.h"
#include "platform/jet/detail/layout.h"

namespace zenvora::jet::detail {

/// The pages of one file: a cache, transactions over pages, and the only reader and writer of the file.
///
/// Pointers into pages stay valid until Trim, Rollback or UndoStatement. Changed pages stay in memory until
/// Commit, which writes them in page order and syncs the file. Within a transaction a statement can be undone
/// alone.
class Pager {
  public:
    Pager(std::shared_ptr<files::HostFile> file, std::filesystem::path path, const Layout& layout,
          bool readOnly);
    /// Where Commit keeps the old images, and the writer's place; a file for writing has both.
    void SetJournal(std::unique_ptr<Journal> journal, std::unique_ptr<WriterGuard> guard);
    /// For reading a file whose last commit was broken off and cannot be rolled back on the disk: these pages
    /// are read in place of those in the file.
    void SetOverlay(const Journal::OldPages& old);

    /// For readers: forgets what is cached when the file has changed since; true when it did.
    bool Refresh();
    [[nodiscard]] files::HostFile& File() noexcept { return *file_; }

    [[nodiscard]] const std::byte* Read(PageNumber page);
    /// The page for changing. Fault 3027: the file is open for reading only.
    [[nodiscard]] std::byte* Write(PageNumber page);
    /// A new page at the end of the file, all zero. Fault 20001: the file would pass 2 GB.
    [[nodiscard]] PageNumber Append();
    [[nodiscard]] PageNumber PageCount() const noexcept { return pageCount_; }
    [[nodiscard]] std::size_t PageSize() const noexcept { return pageSize_; }
    /// Where things lie in this file; lives as long as the Pager.
    [[nodiscard]] const Layout& Format() const noexcept { return layout_; }
    [[nodiscard]] bool IsReadOnly() const noexcept { return readOnly_; }
    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return path_; }

    void Begin();
    void Commit();
    void Rollback();
    [[nodiscard]] bool InTransaction() const noexcept { return inTransaction_; }

    void BeginStatement();
    void EndStatement() noexcept;
    void UndoStatement();

    /// Lets go of the pages used longest ago when the cache is above its limit. Invalidates page pointers.
    void Trim();
    void SetCacheLimit(std::size_t bytes) { cacheLimit_ = bytes; }

    /// The fault for damage found on a page.
    [[nodiscard]] Fault Damaged(PageNumber page, const std::string& what) const;

  private:
    struct Frame {
        std::unique_ptr<std::byte[]> bytes;
        PageNumber page = 0;
        bool dirty = false;
        bool used = false;            // since the last sweep of Trim
        std::uint32_t statement = 0;  // the statement that saved it last
    };
    struct Saved {
        PageNumber page = 0;
        bool wasDirty = false;
        std::unique_ptr<std::byte[]> image;  // set when wasDirty
    };

    Frame* Load(PageNumber page);
    Frame& NewFrame(PageNumber page);
    void Drop(PageNumber page);

    void DropAll();
    void WriteDirtyPages();

    std::shared_ptr<files::HostFile> file_;
    std::unique_ptr<Journal> journal_;
    std::unique_ptr<WriterGuard> guard_;
    files::FileStamp stamp_;
    bool overlaid_ = false;
    bool broken_ = false;  // a commit failed and could not be undone: only the journal can help now
    std::filesystem::path path_;
    Layout layout_;
    std::size_t pageSize_;
    bool readOnly_;
    PageNumber pageCount_ = 0;
    PageNumber storedCount_ = 0;  // pages in the file itself
    std::vector<Frame*> frames_;  // by page number
    std::deque<Frame> pool_;
    std::vector<Frame*> unused_;
    std::size_t cached_ = 0;
    std::size_t cacheLimit_ = std::size_t{256} << 20;
    std::size_t sweep_ = 0;
    PageNumber nextExpected_ = 0;  // for reading ahead
    std::size_t readAhead_ = 1;
    std::vector<std::byte> transfer_;

    bool inTransaction_ = false;
    std::vector<PageNumber> dirty_;
    std::uint32_t statement_ = 0;
    bool inStatement_ = false;
    PageNumber statementCount_ = 0;  // pageCount_ when the statement began
    std::vector<Saved> saved_;
    std::size_t savedCount_ = 0;
};

}  // namespace zenvora::jet::detail
