#pragma once

#include <algorithm>
#include <bit>
#include <map>
#include <string>
#include <vector>

#include "platform/jet/database.h"

namespace zenvora::jet::testing_support {

/// A value as a text that tells any two different values apart.
inline std::string ExactText(const Value& value) {
    std::string text = std::to_string(value.index()) + ":" + ValueText(value);
    if (const auto* number = std::get_if<double>(&value))
        text += "=" + std::to_string(std::bit_cast<std::uint64_t>(*number));
    if (const auto* date = std::get_if<DateTime>(&value))
        text += "=" + std::to_string(std::bit_cast<std::uint64_t>(date->serial));
    if (const auto* number = std::get_if<float>(&value))
        text += "=" + std::to_string(std::bit_cast<std::uint32_t>(*number));
    return text;
}

/// The rows of a table in the order of the file, each as the texts of its values.
inline std::vector<std::vector<std::string>> RowsOf(const Table& table) {
    std::vector<std::vector<std::string>> rows;
    table.Scan([&](const RowView& view) {
        auto& row = rows.emplace_back();
        for (std::size_t i = 0; i < table.Definition().columns.size(); ++i)
            row.push_back(ExactText(view.Get(i)));
        return true;
    });
    return rows;
}

/// What a table is, in a text: columns with all that belongs to them, and indexes. Places in the file are
/// left out.
inline std::string Describe(const TableDefinition& table, bool withStorage = true) {
    std::string text;
    std::map<std::uint16_t, std::string> names;
    for (const ColumnDefinition& column : table.columns) {
        names[column.number] = column.name;
        text += column.name + " type " + std::to_string(static_cast<int>(column.type)) + " characters " +
                std::to_string(column.CharacterLimit()) + " fixed " + std::to_string(column.fixedLength) +
                " auto " + std::to_string(column.autoNumber) + " scale " + std::to_string(column.precision) +
                "." + std::to_string(column.scale) + " default " +
                column.properties.defaultValue.value_or("none") + " required " +
                std::to_string(column.properties.required) + " zero length " +
                std::to_string(column.properties.allowZeroLength);
        if (withStorage)
            text += " bytes " + std::to_string(column.byteLength) + " flags " + std::to_string(column.flags) +
                    " compressed " + std::to_string(column.compressed);
        text += "\n";
    }
    std::vector<std::string> indexes;
    for (const IndexDefinition& index : table.indexes) {
        std::string line = "index";
        for (const std::string& name : index.names)
            line += " " + name;
        for (const IndexColumn& column : index.columns)
            line += (column.ascending ? " +" : " -") + names[column.column];
        line += " unique " + std::to_string(index.unique) + " ignore " + std::to_string(index.ignoreNulls) +
                " required " + std::to_string(index.required) + " primary " +
                std::to_string(index.primaryKey) + " foreign " + std::to_string(index.foreignKey);
        indexes.push_back(line);
    }
    for (const std::string& line : indexes)
        text += line + "\n";
    return text;
}

/// Every user table with its description and its rows, sorted.
inline std::map<std::string, std::vector<std::vector<std::string>>> ContentsOf(Database& database,
                                                                               bool withStorage = true) {
    std::map<std::string, std::vector<std::vector<std::string>>> contents;
    for (const std::string& name : database.TableNames()) {
        Table& table = database.OpenTable(name);
        auto& rows = contents[name];
        rows = RowsOf(table);
        std::sort(rows.begin(), rows.end());
        rows.push_back({Describe(table.Definition(), withStorage)});
    }
    return contents;
}

/// The bytes of the property blob of an object.
inline std::string PropertiesOf(Database& database, const std::string& name) {
    const Table& catalog = database.OpenTable("MSysObjects");
    std::string text = "no such object";
    catalog.Scan([&](const RowView& view) {
        std::string object;
        view.AppendText(catalog.Definition().FindColumn("Name").value(), object);
        if (object == name) text = ValueText(view.Get(catalog.Definition().FindColumn("LvProp").value()));
        return true;
    });
    return text;
}

/// That the row identities of each index are those of the rows, each once.
inline bool IndexesNameEachRow(const Table& table) {
    std::vector<RowId> rows;
    table.Scan([&](const RowView& view) {
        rows.push_back(view.Id());
        return true;
    });
    std::sort(rows.begin(), rows.end());
    for (std::size_t i = 0; i < table.Definition().indexes.size(); ++i) {
        if (table.Definition().indexes[i].ignoreNulls) continue;
        std::vector<RowId> found;
        table.ScanIndex(i, [&](RowId row) {
            found.push_back(row);
            return true;
        });
        std::sort(found.begin(), found.end());
        if (found != rows) return false;
    }
    return true;
}

}  // namespace zenvora::jet::testing_support
