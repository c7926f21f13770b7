#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "import/source_grid.h"
#include "platform/files/host_file.h"

/// The last map used for each source layout, so that the next export of the same system need not be mapped
/// again.
namespace zenvora::importing {

/// What tells a layout from others: the names of its fields, in their order, whatever separates them in the
/// file. Two files of one system have the same.
[[nodiscard]] std::string LayoutOf(const SourceGrid& grid);

/// The maps lie in one folder, each an ordinary map file that is named after its layout.
class RememberedMaps {
  public:
    RememberedMaps(std::filesystem::path folder, files::HostDisk& disk);

    /// The rows of the map that was used last; nothing when there was none, or when it cannot be read.
    [[nodiscard]] std::optional<std::vector<std::string>> Find(const std::string& layout) const;
    /// Keeps the map of a layout in the place of the one before. Faults: those of the disk.
    void Remember(const std::string& layout, const std::vector<std::string>& mappings) const;

  private:
    [[nodiscard]] std::filesystem::path FileOf(const std::string& layout) const;

    std::filesystem::path folder_;
    files::HostDisk& disk_;
};

}  // namespace zenvora::importing
