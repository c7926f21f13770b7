#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "platform/jet/detail/definition_codec.h"

/// A damaged file, opened whatever it looks like.
namespace zenvora::jet::detail {

/// The file with what is missing of its last page, and what cannot be read, as zeros. Of the page at which a
/// file was cut off the front part is still there. Texts of one byte a character are read as Western
/// European, whatever code page the header names. Faults: 3343 (no page of it looks like one of a known
/// version), 3031 (a password), 20001 (encoded; a newer version), and those of the disk on opening.
struct SalvageSource {
    std::unique_ptr<Pager> pager;
    std::uint16_t statedCodePage = 0;  ///< what the header of an Access 97 file says; 0: nothing
};
[[nodiscard]] SalvageSource OpenForSalvage(const std::filesystem::path& path, files::HostDisk& disk);

/// A definition of which only the columns are believed, for one that ReadDefinition refuses. Columns whose
/// names are lost are called "Column 7" by their place. Nothing when the columns themselves are lost.
struct SalvagedDefinition {
    StoredDefinition definition;
    std::size_t namesLost = 0;
};
[[nodiscard]] std::optional<SalvagedDefinition> SalvageDefinition(Pager& pager, PageNumber page);

}  // namespace zenvora::jet::detail
