// Writing to a damaged .mdb file: every change succeeds or faults, the file can be opened and read behind it,
// and a file that was sound stays sound.

#include "databook_bytes.h"
#include "platform/jet/verify.h"

namespace {

using namespace zenvora;

/// A value for a column; `salt` makes rows differ.
jet::Value ValueFor(const jet::ColumnDefinition& column, unsigned salt) {
    using T = jet::ColumnType;
    switch (column.type) {
        case T::Boolean:
            return salt % 2 == 0;
        case T::Byte:
        case T::Integer:
        case T::Long:
            return static_cast<std::int32_t>(salt % 200);
        case T::Currency:
            return jet::Currency{static_cast<std::int64_t>(salt) * 12345};
        case T::Single:
        case T::Double:
        case T::Numeric:
            return 1.0 + salt;
        case T::DateTime:
            return jet::DateTime{36000.0 + salt};
        case T::Text:
            return "Oak " + std::to_string(salt);
        case T::Memo:
            return std::string(salt * 700 % 9000, 'm');
        case T::Ole:
        case T::Binary:
            return jet::Bytes(salt % 100, std::byte{7});
        default:
            return jet::Null{};
    }
}

void ChangeTable(jet::Table& table) {
    const auto row = [&](unsigned salt) {
        std::vector<jet::Value> values;
        for (const jet::ColumnDefinition& column : table.Definition().columns)
            values.push_back(ValueFor(column, salt));
        return values;
    };
    std::vector<jet::RowId> ids;
    fuzz::Tolerate([&] {
        table.Scan([&](const jet::RowView& each) {
            ids.push_back(each.Id());
            return ids.size() < 6;
        });
    });
    for (unsigned i = 0; i < 4; ++i)
        fuzz::Tolerate([&] { table.Insert(row(1000 + 7 * i)); });
    for (unsigned i = 0; i < ids.size(); ++i) {
        fuzz::Tolerate([&] {
            if (i % 3 == 2) {
                table.Delete(ids[i]);
            } else {
                table.Update(ids[i], row(2000 + 11 * i));
            }
        });
    }
    fuzz::Tolerate([&] {
        jet::NewColumn column;
        column.name = "Fuzz";
        column.characters = 10;
        table.AddColumn(column);
        table.SetDefault("Fuzz", "\"x\"");
        table.Insert(row(5000));
    });
}

void ChangeFile(testing_support::MemoryDisk& disk) {
    const auto databook = jet::Database::Open(fuzz::kDatabook, jet::Database::Access::ReadWrite, disk);
    std::vector<std::string> names = databook->TableNames();
    if (names.size() > 3) names.resize(3);
    fuzz::Tolerate([&] { databook->Begin(); });
    for (const std::string& name : names)
        fuzz::Tolerate([&] { ChangeTable(databook->OpenTable(name)); });
    fuzz::Tolerate([&] { databook->Commit(); });
    fuzz::Tolerate([&] {
        jet::NewTable table;
        table.name = "FuzzTable";
        table.columns.resize(2);
        table.columns[0].name = "Key";
        table.columns[0].characters = 20;
        table.columns[1].name = "Note";
        table.columns[1].type = jet::ColumnType::Memo;
        table.indexes.push_back({"Key", {"Key"}, {}, true, false, false, true});
        ChangeTable(databook->CreateTable(table, 46000));
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto disk = fuzz::DiskWith(data, size);
    bool sound = false;
    fuzz::Tolerate([&] { sound = jet::Verify(fuzz::kDatabook, disk).Sound(); });
    fuzz::Tolerate([&] { ChangeFile(disk); });
    fuzz::Tolerate(
        [&] { fuzz::ReadAll(*jet::Database::Open(fuzz::kDatabook, jet::Database::Access::ReadOnly, disk)); });
    if (sound && !jet::Verify(fuzz::kDatabook, disk).Sound()) __builtin_trap();
    return 0;
}
