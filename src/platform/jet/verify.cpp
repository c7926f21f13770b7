#include "platform/jet/verify.h"

#include "platform/jet/detail/file_guard.h"
#include "platform/jet/detail/header.h"
#include "platform/jet/detail/journal.h"
#include "platform/jet/detail/verify_catalog.h"
#include "platform/jet/detail/verify_header.h"

namespace zenvora::jet {

namespace {
/// Pages in memory at a time: the check walks forward and needs few again.
constexpr std::size_t kCacheBytes = std::size_t{64} << 20;
}  // namespace

VerifyReport Verify(const std::filesystem::path& path, files::HostDisk& disk) {
    const std::shared_ptr<files::HostFile> file = disk.Open(path, files::OpenMode::ReadOnly);
    // Held to the end: a commit in the middle of the check would look like damage.
    const detail::CommitLock still(*file, path, files::LockKind::Shared);
    const detail::Layout layout = detail::CheckHeader(*file, path, false);
    detail::Findings findings;
    detail::Pager pager(file, path, layout, true);
    pager.SetCacheLimit(kCacheBytes);
    if (const auto overlay = detail::Journal::Peek(disk, path, *file)) {
        findings.Note(
            {},
            "a change was broken off half-way: the file was checked as it was before that change. It "
            "is brought back to that state when it is next opened for writing; keep " +
                detail::Journal::PathOf(path).filename().string() + " beside it until then");
        pager.SetOverlay(*overlay);
    } else {
        if (detail::Journal::IsOvertaken(disk, path, *file)) {
            findings.Note({},
                          detail::Journal::PathOf(path).filename().string() +
                              " stands for a change that was broken off, and another program has written to "
                              "the file since: it is not undone, and the file was checked as it is");
        }
        if (const std::uint64_t rest = file->Size() % layout.pageSize; rest != 0)
            findings.Error({}, "the file is cut off: it ends " + std::to_string(rest) + " bytes into a page");
    }
    detail::CheckHeaderDetails(pager, findings);
    detail::PageBook book(pager, findings);
    book.ReadGlobalMap();
    detail::CatalogCheck catalog(book);
    book.CheckAccounting(catalog.Run());
    return findings.Take();
}

}  // namespace zenvora::jet
