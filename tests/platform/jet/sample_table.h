#pragma once

#include "platform/jet/database.h"
#include "support/memory_disk.h"

namespace zenvora::jet::testing_support {

using zenvora::testing_support::MemoryDisk;

inline NewColumn TextColumn(const char* name, int characters) {
    NewColumn column;
    column.name = name;
    column.characters = characters;
    return column;
}
inline NewColumn ColumnOf(const char* name, ColumnType type) {
    NewColumn column;
    column.name = name;
    column.type = type;
    return column;
}

/// A table with every kind of column and three indexes: a text key, a date (not unique), a unique Long.
inline NewTable SampleTable() {
    NewTable table;
    table.name = "Sample";
    table.columns = {TextColumn("Street", 50),
                     ColumnOf("Yes", ColumnType::Boolean),
                     ColumnOf("Small", ColumnType::Byte),
                     ColumnOf("Short", ColumnType::Integer),
                     ColumnOf("Whole", ColumnType::Long),
                     ColumnOf("Amount", ColumnType::Currency),
                     ColumnOf("Rough", ColumnType::Single),
                     ColumnOf("Price", ColumnType::Double),
                     ColumnOf("Listed", ColumnType::DateTime),
                     ColumnOf("Note", ColumnType::Memo),
                     ColumnOf("Picture", ColumnType::Ole),
                     ColumnOf("Id", ColumnType::Guid),
                     ColumnOf("Exact", ColumnType::Numeric),
                     TextColumn("Town", 255),
                     TextColumn("Flag", 1),
                     TextColumn("Days", 4)};
    table.columns[12].precision = 18;
    table.columns[12].scale = 2;
    table.columns[14].fixedLength = true;
    table.columns[15].fixedLength = true;
    NewIndex key;
    key.name = "PrimaryKey";
    key.columns = {"Street"};
    key.primaryKey = true;
    NewIndex byDate;
    byDate.name = "ByDate";
    byDate.columns = {"Listed", "Town"};
    byDate.descending = {true, false};
    NewIndex whole;
    whole.name = "Whole";
    whole.columns = {"Whole"};
    whole.unique = true;
    whole.ignoreNulls = true;
    table.indexes = {key, byDate, whole};
    return table;
}

inline constexpr text::Date kNow = 46000.0;

}  // namespace zenvora::jet::testing_support
