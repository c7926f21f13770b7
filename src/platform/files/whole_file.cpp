#include "platform/files/whole_file.h"

#include <algorithm>
#include <functional>
#include <span>
#include <vector>

#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::files {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20U;
constexpr int kMostLeftovers = 1000;

std::span<const std::byte> AsBytes(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

/// A fault of the file beside `path` as one of `path`, which is the only one that the user knows.
[[noreturn]] void ThrowAsOf(const std::filesystem::path& path, const std::filesystem::path& beside,
                            Fault fault) {
    fault.description = text::ReplaceAll(fault.description, beside.string(), path.string());
    if (fault.place.file == beside.string()) fault.place.file = path.string();
    throw fault;
}

/// A new file beside `path` under a name that nobody uses.
std::filesystem::path CreateBeside(HostDisk& disk, const std::filesystem::path& path,
                                   std::unique_ptr<HostFile>& file) {
    for (int n = 0;; ++n) {
        std::filesystem::path beside = path;
        beside += ".new" + text::IntegerText(n);
        try {
            file = disk.Open(beside, OpenMode::CreateNew);
            return beside;
        } catch (const Fault& fault) {
            // A crash may have left some behind.
            if (fault.number != fault::kFileExists || n == kMostLeftovers) ThrowAsOf(path, beside, fault);
        }
    }
}

void CopyPermissions(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::error_code error;
    const auto status = std::filesystem::status(from, error);
    if (!error) std::filesystem::permissions(to, status.permissions(), error);
    // A disk without permissions is no reason to refuse the write.
}

/// Fills a new file beside `path` by `fill` and puts it in the place of `path`.
void Replace(HostDisk& disk, const std::filesystem::path& path, const std::function<void(HostFile&)>& fill) {
    std::unique_ptr<HostFile> file;
    const std::filesystem::path beside = CreateBeside(disk, path, file);
    const auto discard = [&] {
        file.reset();
        try {
            disk.Remove(beside);
        } catch (const Fault&) {  // NOLINT(bugprone-empty-catch): the first fault is the one to tell
        }
    };
    try {
        fill(*file);
        file->Sync();
        file.reset();
        if (disk.Exists(path)) CopyPermissions(path, beside);
        disk.Rename(beside, path);
    } catch (const Fault& fault) {
        discard();
        ThrowAsOf(path, beside, fault);
    } catch (...) {
        discard();
        throw;
    }
    disk.SyncFolder(path.parent_path());
}

void CopyInto(HostFile& from, HostFile& to) {
    const std::uint64_t size = from.Size();
    std::vector<std::byte> piece(static_cast<std::size_t>(std::min<std::uint64_t>(size, kPieceBytes)));
    for (std::uint64_t at = 0; at < size; at += piece.size()) {
        piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(size - at, kPieceBytes)));
        from.ReadAt(at, piece);
        to.WriteAt(at, piece);
    }
}

/// The file that a link leads to, so that the link itself stays.
std::filesystem::path Target(const std::filesystem::path& path) {
    std::error_code error;
    const auto target =
        std::filesystem::is_symlink(path, error) ? std::filesystem::canonical(path, error) : path;
    return error ? path : target;
}

void ReplaceAndKeep(HostDisk& disk, const std::filesystem::path& path, Replaced replaced,
                    const std::function<void(HostFile&)>& fill) {
    const std::filesystem::path target = Target(path);
    // A copy rather than a rename: the file itself is never away, whenever the program stops.
    if (replaced == Replaced::KeptAsBak && disk.Exists(target)) {
        const auto old = disk.Open(target, OpenMode::ReadOnly);
        Replace(disk, BakPath(target), [&](HostFile& file) { CopyInto(*old, file); });
    }
    Replace(disk, target, fill);
}

}  // namespace

std::string ReadWholeFile(const std::filesystem::path& path, HostDisk& disk) {
    const auto file = disk.Open(path, OpenMode::ReadOnly);
    std::string bytes(static_cast<std::size_t>(file->Size()), '\0');
    file->ReadAt(0, std::as_writable_bytes(std::span(bytes.data(), bytes.size())));
    return bytes;
}

void WriteWholeFile(const std::filesystem::path& path, std::string_view bytes, Replaced replaced,
                    HostDisk& disk) {
    ReplaceAndKeep(disk, path, replaced, [bytes](HostFile& file) { file.WriteAt(0, AsBytes(bytes)); });
}

void CopyWholeFile(const std::filesystem::path& from, const std::filesystem::path& to, Replaced replaced,
                   HostDisk& disk) {
    const auto source = disk.Open(from, OpenMode::ReadOnly);
    ReplaceAndKeep(disk, to, replaced, [&source](HostFile& file) { CopyInto(*source, file); });
}

std::filesystem::path BakPath(const std::filesystem::path& path) {
    std::filesystem::path bak = path;
    bak += ".bak";
    return bak;
}

}  // namespace zenvora::files
