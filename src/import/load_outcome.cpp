#include "import/load_outcome.h"

#include <algorithm>
#include <set>

#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

using Columns = std::vector<MappedColumn>;

bool IsBlankRow(const SourceGrid& grid, int row) {
    for (int col = 0; col < grid.Cols(); ++col) {
        if (!text::TrimView(grid.TextMatrix(row, col)).empty()) return false;
    }
    return true;
}

RefusedRow Reason(std::string_view words, const DestinationField& field, std::string_view value) {
    std::string reason(words);
    reason.append(" \"").append(field.caption).append("\"");
    if (!value.empty()) reason.append(": ").append(value);
    return {.reason = std::move(reason), .field = field.caption};
}

/// A column that the statement names twice, empty when there is none.
std::string NamedTwice(const Columns& columns) {
    std::set<std::string_view> names;
    for (const MappedColumn& mapped : columns) {
        if (!names.insert(mapped.field.column).second) return mapped.field.column;
        if (mapped.field.column == "DAYSONMARKET" && !names.insert("ORIGLISTDATE").second)
            return "ORIGLISTDATE";
    }
    return {};
}

/// Why the statement itself is none that the store can read.
RefusedRow ExplainStatement(const Fault& fault, const InsertStatement& statement, const SourceGrid& grid,
                            int row) {
    const Columns& columns = statement.Plan().columns;
    if (columns.empty()) return {.reason = "no field is mapped to a column of the source"};
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const DestinationField& field = columns[k].field;
        const std::string& value = statement.Values()[k];
        if (field.type == FieldType::Number) {
            if (!text::IsNumeric(value))
                return Reason("no number in", field,
                              text::TrimView(grid.TextMatrix(row, columns[k].gridColumn)));
        } else if (value.find('"') != std::string::npos) {
            return Reason("a double quote in", field, value);
        } else if (value.empty() && k + 1 == columns.size()) {
            return Reason("the last mapped column of the source is empty:", field, "");
        }
    }
    return {.reason = fault.description};
}

const MappedColumn* FindColumn(const Columns& columns, std::string_view name) {
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const MappedColumn& mapped) {
        return text::EqualsNoCase(mapped.field.column, name);
    });
    return found == columns.end() ? nullptr : &*found;
}

/// Why a value did not go into its column: the column that the store named, else the first date that is none.
RefusedRow ExplainValue(const Fault& fault, const InsertStatement& statement) {
    const LoadPlan& plan = statement.Plan();
    const MappedColumn* blamed = FindColumn(plan.columns, fault.place.column);
    for (const MappedColumn& mapped : plan.columns) {
        const std::string& value =
            statement.Values()[static_cast<std::size_t>(&mapped - plan.columns.data())];
        const bool isBadDate = blamed == nullptr && mapped.field.type == FieldType::Date &&
                               !text::TextToDate(value, plan.currentYear).has_value();
        if (&mapped != blamed && !isBadDate) continue;
        if (fault.number == fault::kTooLong) return Reason("too long for", mapped.field, value);
        if (fault.number == fault::kTypeMismatch)
            return Reason(mapped.field.type == FieldType::Date ? "no date in" : "no number in", mapped.field,
                          value);
    }
    return {.reason = fault.description};
}

}  // namespace

bool LoadOutcome::HasErrors() const {
    return std::any_of(refused.begin(), refused.end(), [](const RefusedRow& row) { return !row.isBlank; });
}

RefusedRow ExplainRefusal(const Fault& fault, const InsertStatement& statement, const SourceGrid& grid,
                          int row) {
    if (IsBlankRow(grid, row)) return {.reason = "blank row", .isBlank = true};
    const Columns& columns = statement.Plan().columns;
    if (const std::string column = NamedTwice(columns); !column.empty()) {
        const bool fromDays = column == "ORIGLISTDATE" && FindColumn(columns, "DAYSONMARKET") != nullptr;
        return {.reason = "two values for the column " + column +
                          (fromDays ? ": map either the original listing date or the days on market" : "")};
    }
    const MappedColumn* key = FindColumn(columns, "CENTRALKEY");
    const std::string address =
        key == nullptr ? "" : statement.Values()[static_cast<std::size_t>(key - columns.data())];
    switch (fault.number) {
        case fault::kSyntax:
            return ExplainStatement(fault, statement, grid, row);
        case fault::kDuplicateKey:
            return {.reason = "duplicate key: " + address, .field = "Address"};
        case fault::kNullKey:
        case fault::kRequired:
        case fault::kEmptyText:
            if (address.empty()) return {.reason = "no address", .field = "Address"};
            return {.reason = fault.description};
        default:
            return ExplainValue(fault, statement);
    }
}

}  // namespace zenvora::importing
