#include "databook_bytes.h"

#include <cstddef>

#include "platform/fault.h"

namespace zenvora::fuzz {

namespace {
/// Values read of one table: a small file can promise many rows of long texts, each legal by itself.
constexpr std::size_t kMostValues = 20000;
constexpr std::size_t kMostEntries = 20000;
}  // namespace

testing_support::MemoryDisk DiskWith(const std::uint8_t* data, std::size_t size) {
    const auto* const bytes = reinterpret_cast<const std::byte*>(data);
    testing_support::MemoryDisk disk;
    disk.Put(kDatabook, {bytes, bytes + size});
    return disk;
}

bool Tolerate(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const Fault& fault) {
        if (fault.number == 0 || fault.description.empty()) __builtin_trap();  // a fault that says nothing
        return false;
    }
}

void ReadAll(jet::Database& databook) {
    std::vector<std::string> names;
    Tolerate([&] { names = databook.TableNames(); });
    for (const std::string& name : names) {
        Tolerate([&] {
            jet::Table& table = databook.OpenTable(name);
            const std::size_t columns = table.Definition().columns.size();
            std::size_t values = 0;
            std::string text;
            Tolerate([&] {
                table.Scan([&](const jet::RowView& row) {
                    for (std::size_t i = 0; i < columns; ++i) {
                        text.clear();
                        Tolerate([&] {
                            static_cast<void>(row.IsNull(i));
                            static_cast<void>(row.Number(i));
                            row.AppendText(i, text);
                            text += jet::ValueText(row.Get(i));
                        });
                    }
                    Tolerate([&] { static_cast<void>(table.Read(row.Id())); });
                    values += columns + 1;
                    return values < kMostValues;
                });
            });
            for (std::size_t i = 0; i < columns; ++i)
                static_cast<void>(table.DefaultOf(i));
            for (std::size_t i = 0; i < table.Definition().indexes.size(); ++i) {
                std::size_t entries = 0;
                Tolerate([&] {
                    table.ScanIndex(i, [&](jet::RowId row) {
                        if (entries % 64 == 0) Tolerate([&] { static_cast<void>(table.Read(row)); });
                        return ++entries < kMostEntries;
                    });
                });
            }
        });
    }
}

}  // namespace zenvora::fuzz
