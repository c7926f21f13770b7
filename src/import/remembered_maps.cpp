#include "import/remembered_maps.h"

#include <array>
#include <cstdint>
#include <utility>

#include "import/mapping.h"
#include "platform/fault.h"
#include "platform/files/whole_file.h"

namespace zenvora::importing {

std::string LayoutOf(const SourceGrid& grid) {
    std::string layout;
    for (int col = 0; col < grid.Cols(); ++col)
        layout.append(grid.TextMatrix(0, col)).push_back('\n');
    return layout;
}

RememberedMaps::RememberedMaps(std::filesystem::path folder, files::HostDisk& disk)
    : folder_(std::move(folder)), disk_(disk) {}

std::filesystem::path RememberedMaps::FileOf(const std::string& layout) const {
    // FNV-1a: 64 bits are plenty for the few layouts that one office sees.
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : layout)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    std::string name;
    for (int digit = 60; digit >= 0; digit -= 4)
        name.push_back("0123456789ABCDEF"[(hash >> digit) & 0xFU]);
    return folder_ / (name + ".map");
}

std::optional<std::vector<std::string>> RememberedMaps::Find(const std::string& layout) const {
    const std::filesystem::path file = FileOf(layout);
    if (!disk_.Exists(file)) return std::nullopt;
    try {
        std::vector<std::string> mappings = ReadMapFile(disk_, file);
        for (const std::string& mapping : mappings) {
            if (!SplitMapping(mapping)) return std::nullopt;
        }
        return mappings;
    } catch (const Fault&) {
        // A convenience: what cannot be read is as good as not there.
        return std::nullopt;
    }
}

void RememberedMaps::Remember(const std::string& layout, const std::vector<std::string>& mappings) const {
    files::WriteWholeFile(FileOf(layout), MapText(mappings), files::Replaced::Gone, disk_);
}

}  // namespace zenvora::importing
