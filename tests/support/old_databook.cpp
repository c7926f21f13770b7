#include "support/old_databook.h"

#include "platform/jet/database.h"

namespace zenvora::testing_support {
namespace {

constexpr text::Date kMade = 36526;  // 1/1/2000

jet::Value TextOrNull(const std::string& text) {
    return text.empty() ? jet::Value{jet::Null{}} : jet::Value{text};
}

}  // namespace

void MakeOldDatabook(const std::filesystem::path& path, const std::vector<OldRecord>& records,
                     const OldDatabook& kind) {
    const auto database = std::filesystem::exists(path)
                              ? jet::Database::Open(path, jet::Database::Access::ReadWrite)
                              : jet::Database::Create(path, kMade);
    jet::NewTable table;
    table.name = "COMPS";
    const auto add = [&](const char* name, jet::ColumnType type, int width) {
        jet::NewColumn column;
        column.name = name;
        column.type = type;
        column.characters = width;
        column.properties.allowZeroLength = kind.takesEmptyText;
        table.columns.push_back(column);
    };
    add(kind.hasCentralKey ? "CENTRALKEY" : "FILENUMBER", jet::ColumnType::Text, 50);
    for (const char* name : {"ADDRESS", "ADDRESS2", "NEIGHBORHD"})
        add(name, jet::ColumnType::Text, 50);
    add("CITY", jet::ColumnType::Text, 30);
    add("ST", jet::ColumnType::Text, 2);
    add("ZIP", jet::ColumnType::Text, 10);
    add("SELLINGPR", jet::ColumnType::Double, 0);
    add("PRICEFLD", jet::ColumnType::Double, 0);
    add("SALEDATE", jet::ColumnType::DateTime, 0);
    add("SALEFLD", jet::ColumnType::DateTime, 0);
    if (kind.hasOldColumns) {
        for (const char* name : {"OTHERAREA2", "OtherArea1", "ContrKDate", "ERCFinal"})
            add(name, jet::ColumnType::Text, 20);
    }
    jet::Table& comps = database->CreateTable(table, kMade);
    database->Begin();
    for (const OldRecord& record : records) {
        std::vector<jet::Value> row{record.key,
                                    record.key,
                                    TextOrNull(record.address2),
                                    TextOrNull(record.neighbourhood),
                                    TextOrNull(record.city),
                                    TextOrNull(record.state),
                                    TextOrNull(record.zip),
                                    250000.0,
                                    jet::Null{},
                                    jet::DateTime{39873},  // 3/1/2009
                                    jet::Null{}};
        if (kind.hasOldColumns) {
            for (const std::string* text :
                 {&record.otherArea2, &record.otherArea1, &record.contrKDate, &record.ercFinal})
                row.push_back(TextOrNull(*text));
        }
        comps.Insert(row);
    }
    database->Commit();
}

}  // namespace zenvora::testing_support
