#include "cli/recordset_output.h"

#include "cli/json_lines.h"
#include "cli/values.h"

namespace zenvora::cli {

namespace {

bool IsNumber(jet::ColumnType type) {
    switch (type) {
        case jet::ColumnType::Byte:
        case jet::ColumnType::Integer:
        case jet::ColumnType::Long:
        case jet::ColumnType::Currency:
        case jet::ColumnType::Single:
        case jet::ColumnType::Double:
        case jet::ColumnType::Numeric:
            return true;
        default:
            return false;
    }
}

void ForEach(ado::Recordset& records, const std::function<void()>& visit) {
    if (records.RecordCount() == 0) return;
    for (records.MoveFirst(); !records.Eof(); records.MoveNext())
        visit();
}

}  // namespace

std::vector<Column> ColumnsOf(const ado::Recordset& records) {
    std::vector<Column> columns;
    for (const auto& field : records.Fields())
        columns.push_back({field.name, IsNumber(field.type)});
    return columns;
}

RowSource RowsOf(ado::Recordset& records, std::function<std::string(const jet::Value&)> text) {
    return [&records, text = std::move(text)](const auto& visit) {
        std::vector<std::string> cells(records.Fields().size());
        ForEach(records, [&] {
            for (std::size_t i = 0; i < cells.size(); ++i)
                cells[i] = text(records.Value(static_cast<int>(i)));
            visit(cells);
        });
    };
}

void WriteRecordsJson(std::ostream& out, ado::Recordset& records) {
    out << R"({"records":[)";
    JsonLines lines(out);
    const auto& fields = records.Fields();
    ForEach(records, [&] {
        Json record = Json::object();
        for (std::size_t i = 0; i < fields.size(); ++i)
            record[fields[i].name] = ToJson(records.Value(static_cast<int>(i)));
        lines.Add(record);
    });
    lines.End();
}

void WriteRowsJson(std::ostream& out, ado::Recordset& records) {
    Json columns = Json::array();
    for (const auto& field : records.Fields())
        columns.push_back(field.name);
    out << R"({"columns":)" << Compact(columns) << R"(,"rows":[)";
    JsonLines lines(out);
    const auto count = static_cast<int>(records.Fields().size());
    ForEach(records, [&] {
        Json row = Json::array();
        for (int i = 0; i < count; ++i)
            row.push_back(ToJson(records.Value(i)));
        lines.Add(row);
    });
    lines.End();
}

}  // namespace zenvora::cli
