#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/files/host_file.h"

/// Files read and written as a whole.
namespace zenvora::files {

/// What becomes of the file that a write replaces.
enum class Replaced {
    Gone,
    KeptAsBak,  ///< kept beside it as NAME.bak (`LISTINGS.map.bak`); what was at NAME.bak is replaced
};

/// All bytes of a file. Faults: 53, 57, 75, 76.
[[nodiscard]] std::string ReadWholeFile(const std::filesystem::path& path, HostDisk& disk = SystemDisk());

/// Writes a file so that a crash at any instant leaves either the old file or the new one: into a new file in
/// the same folder, synced, then renamed over the old one, whose permissions it takes. A link is followed,
/// and stays one. After a fault the old file is as it was. Faults: 57, 61, 70, 75, 76.
void WriteWholeFile(const std::filesystem::path& path, std::string_view bytes,
                    Replaced replaced = Replaced::Gone, HostDisk& disk = SystemDisk());

/// The same with the bytes of another file, taken a piece at a time. Faults: as both of the above.
void CopyWholeFile(const std::filesystem::path& from, const std::filesystem::path& to,
                   Replaced replaced = Replaced::Gone, HostDisk& disk = SystemDisk());

/// The name that Replaced::KeptAsBak keeps a file under.
[[nodiscard]] std::filesystem::path BakPath(const std::filesystem::path& path);

}  // namespace zenvora::files
