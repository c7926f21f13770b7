#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fault.h"
#include "platform/files/host_file.h"

/// Mappings of a source field to a destination caption, and the files that keep them.
namespace zenvora::importing {

struct Mapping {
    std::string_view source;
    std::string_view destination;
};

/// The text of a mapping, as a list row and as a line of a map file: "Sale Dt <-> Sale Date".
[[nodiscard]] std::string MappingText(std::string_view source, std::string_view destination);

/// The two sides of such a text, cut at its first "<->": the character in front of it and the first one
/// behind it belong to neither. Nothing when there is no "<->" or when it stands at the very start. The sides
/// are parts of `text`.
[[nodiscard]] std::optional<Mapping> SplitMapping(std::string_view text);

/// The same, for a row that must be a mapping. Fault 5: it is none; `place` says where it came from.
[[nodiscard]] Mapping RequiredMapping(std::string_view text, Place place);

/// The lines of a map file, as they stand but for one leading and one trailing double quote. Lines end in CR,
/// CR LF or LF. Faults: as files::ReadWholeFile.
[[nodiscard]] std::vector<std::string> ReadMapFile(files::HostDisk& disk, const std::filesystem::path& path);

/// Mappings as a map file holds them, in UTF-8.
[[nodiscard]] std::string MapText(const std::vector<std::string>& mappings);

/// Writes a map file, line ends CR LF. A file that stands there gives the encoding (unless the new text would
/// not read back the same in it) and is kept beside it as NAME.bak; a new file is UTF-8. Faults: those of the
/// disk; the old file is then still there, under its name or as NAME.bak.
void WriteMapFile(files::HostDisk& disk, const std::filesystem::path& path,
                  const std::vector<std::string>& mappings);

}  // namespace zenvora::importing
