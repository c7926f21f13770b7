#include "platform/jet/verify.h"

#include "platform/jet/detail/header.h"
#include "platform/jet/detail/verify_catalog.h"
#include "platform/jet/detail/verify_header.h"

namespace zenvora::jet {

namespace {
using namespace detail;

/// Pages in memory at a time: the check walks forward and needs few again.
constexpr std::size_t kCacheBytes = std::size_t{64} << 20;

void CheckFileSize(files::HostFile& file, const Layout& layout, Findings& findings) {
    if (const std::uint64_t rest = file.Size() % layout.pageSize; rest != 0) {
        findings.Error({}, "the file is cut off: it ends " + std::to_string(rest) + " bytes into a page");
    }
}
}  // namespace

VerifyReport Verify(const std::filesystem::path& path, files::HostDisk& disk) {
    std::unique_ptr<files::HostFile> file = disk.Open(path, files::OpenMode::ReadOnly);
    CheckHeader(*file, path, false);
    const Layout& layout = kJet4;
    Findings findings;
    CheckFileSize(*file, layout, findings);
    Pager pager(std::move(file), path, layout.pageSize, true);
    pager.SetCacheLimit(kCacheBytes);
    CheckHeaderDetails(pager, layout, findings);
    PageBook book(pager, layout, findings);
    book.ReadGlobalMap();
    CatalogCheck catalog(book);
    book.CheckAccounting(catalog.Run());
    return findings.Take();
}

}  // namespace zenvora::jet
