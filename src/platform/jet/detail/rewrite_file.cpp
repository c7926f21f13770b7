#include "platform/jet/detail/rewrite_file.h"

#include <algorithm>

#include "platform/fault.h"
#include "platform/files/whole_file.h"
#include "platform/jet/verify.h"

namespace zenvora::jet::detail {

namespace {
constexpr int kMostLeftovers = 1000;

Place At(const std::filesystem::path& path) {
    Place place;
    place.file = path.string();
    return place;
}

void RemoveQuietly(const std::filesystem::path& path, files::HostDisk& disk) {
    try {
        disk.Remove(path);
    } catch (const Fault&) {  // NOLINT(bugprone-empty-catch): the first fault is the one to tell
    }
}

/// Copies into a new file beside `path` under a name that nobody uses, which is returned.
std::filesystem::path CopyBeside(Database& source, const std::filesystem::path& path, text::Date now,
                                 files::HostDisk& disk, CopyReport& report) {
    for (int n = 0;; ++n) {
        std::filesystem::path beside = path;
        beside += ".new" + std::to_string(n);
        try {
            if (disk.Exists(beside)) {
                // A crash may have left some behind.
                if (n < kMostLeftovers) continue;
                throw Fault{fault::kFileExists, "the file is there already: remove it", At(beside)};
            }
            report = CopyDatabase(source, beside, now, disk);
            return beside;
        } catch (const Fault& fault) {
            if (fault.number != fault::kFileExists) RemoveQuietly(beside, disk);
            throw;
        } catch (...) {
            RemoveQuietly(beside, disk);
            throw;
        }
    }
}

std::uint64_t SizeOf(const std::filesystem::path& path, files::HostDisk& disk) {
    return disk.Open(path, files::OpenMode::ReadOnly)->Size();
}
}  // namespace

std::filesystem::path BehindLink(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const auto target = std::filesystem::canonical(path, error);
    return error ? path : target;
}

RewriteReport Rewrite(Database& source, const std::filesystem::path& path, text::Date now,
                      files::HostDisk& disk) {
    RewriteReport report;
    report.bytesBefore = SizeOf(path, disk);
    const std::filesystem::path beside = CopyBeside(source, path, now, disk, report.contents);
    try {
        {
            const auto copy = Database::Open(beside, Database::Access::ReadOnly, disk);
            CompareCopy(source, *copy);
        }
        if (const VerifyReport check = Verify(beside, disk); !check.Sound()) {
            const auto first = std::find_if(
                check.findings.begin(), check.findings.end(),
                [](const VerifyFinding& each) { return each.severity == VerifyFinding::Severity::Error; });
            throw Fault{fault::kDamaged,
                        "the new file is not sound" +
                            (first == check.findings.end() ? std::string() : " (" + first->sentence + ")") +
                            ": it was thrown away, and the file stands as it stood",
                        At(path)};
        }
        report.bytesAfter = SizeOf(beside, disk);
        std::error_code ignored;  // a disk without permissions is no reason to refuse
        const auto status = std::filesystem::status(path, ignored);
        if (!ignored) std::filesystem::permissions(beside, status.permissions(), ignored);
        // A copy rather than a rename: the file itself is never away, whenever the program stops.
        report.backup = files::BakPath(path);
        files::CopyWholeFile(path, report.backup, files::Replaced::Gone, disk);
        disk.Rename(beside, path);
    } catch (...) {
        RemoveQuietly(beside, disk);
        throw;
    }
    try {
        disk.SyncFolder(path.parent_path());
    } catch (const Fault&) {
        // The new file stands in its place. Should a power cut bring the old one back, nothing is lost
        // either.
    }
    return report;
}

}  // namespace zenvora::jet::detail
