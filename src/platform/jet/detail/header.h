#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

#include "platform/files/host_file.h"
#include "platform/jet/detail/layout.h"

/// Page 0: what kind of file this is, and the few settings that a reader must look at.
namespace zenvora::jet::detail {

inline constexpr std::size_t kHeaderSize = 4096;

/// Checks the header of an open file before anything else is read: is it a database, of a version that is
/// known, whole, neither encoded nor closed by a password? Returns the layout of its version, with the code
/// page of the file where texts have one. Faults 3343, 3049, 3031, 20001, each saying what to do.
[[nodiscard]] Layout CheckHeader(files::HostFile& file, const std::filesystem::path& path, bool forWriting);

/// A copy of page 0 without the mask over its first settings.
[[nodiscard]] std::vector<std::byte> UnmaskedHeader(std::span<const std::byte> page, std::size_t maskedSize);

/// Writes the header of a new file into a zeroed page. Its creation date is fixed: the scrambling of the
/// account names in the catalog hangs on it in a way that is not known.
void MakeHeader(std::span<std::byte> page);

}  // namespace zenvora::jet::detail
