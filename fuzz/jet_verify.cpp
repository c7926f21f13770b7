// Checking a damaged .mdb file: the check ends, changes nothing, and what it calls sound can be read.

#include <cstring>

#include "databook_bytes.h"
#include "platform/jet/verify.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    auto disk = fuzz::DiskWith(data, size);
    bool sound = false;
    fuzz::Tolerate([&] { sound = jet::Verify(fuzz::kDatabook, disk).Sound(); });
    const auto& bytes = disk.Content(fuzz::kDatabook);
    if (bytes.size() != size || (size > 0 && std::memcmp(bytes.data(), data, size) != 0)) __builtin_trap();
    if (!sound) return 0;
    const auto databook = jet::Database::Open(fuzz::kDatabook, jet::Database::Access::ReadOnly, disk);
    for (const std::string& name : databook->TableNames()) {
        const jet::Table& table = databook->OpenTable(name);
        const std::size_t columns = table.Definition().columns.size();
        std::size_t rows = 0;
        table.Scan([&](const jet::RowView& row) {
            for (std::size_t i = 0; i < columns; ++i)
                static_cast<void>(row.Get(i));
            return ++rows < 1000;
        });
    }
    return 0;
}
