#include "platform/jet/convert.h"

#include "platform/jet/detail/file_guard.h"
#include "platform/jet/detail/rewrite_file.h"
#include "platform/jet/detail/store.h"

namespace zenvora::jet {

namespace {
Place At(const std::filesystem::path& path) {
    Place place;
    place.file = path.string();
    return place;
}
}  // namespace

RewriteReport Convert(const std::filesystem::path& path, text::Date now, files::HostDisk& disk) {
    const std::filesystem::path target = detail::BehindLink(path);
    // The old format is only read here, but whoever writes it elsewhere must not be overtaken.
    const std::shared_ptr<files::HostFile> file = disk.Open(target, files::OpenMode::ReadWrite);
    const detail::WriterGuard guard(disk, target, file);
    const auto source = Database::Open(target, Database::Access::ReadOnly, disk);
    if (detail::StoreOf(*source).Pages().Format().version == detail::kJet4.version) {
        throw Fault{fault::kUnsupported,
                    "the file is in the format of Access 2000 to 2003 already: there is nothing to convert",
                    At(path)};
    }
    return detail::Rewrite(*source, target, now, disk);
}

}  // namespace zenvora::jet
