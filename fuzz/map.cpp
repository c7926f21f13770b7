// Map files: what is read is split, and writing it back keeps it.

#include <string>
#include <vector>

#include "databook_bytes.h"
#include "import/mapping.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    auto disk = fuzz::DiskWith(data, size);
    fuzz::Tolerate([&] {
        const std::vector<std::string> lines = importing::ReadMapFile(disk, fuzz::kDatabook);
        for (const std::string& line : lines) {
            if (const auto mapping = importing::SplitMapping(line))
                static_cast<void>(importing::MappingText(mapping->source, mapping->destination));
        }
        importing::WriteMapFile(disk, fuzz::kDatabook, lines);
        static_cast<void>(importing::ReadMapFile(disk, fuzz::kDatabook));
    });
    return 0;
}
