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

/// The column whose value the store would not take: the one that it named, else the first date that is none.
const MappedColumn* BlamedColumn(const Fault& fault, const InsertStatement& statement) {
    const LoadPlan& plan = statement.Plan();
    if (const MappedColumn* named = FindColumn(plan.columns, fault.place.column)) return named;
    for (std::size_t k = 0; k < plan.columns.size(); ++k) {
        const bool isDate = plan.columns[k].field.type == FieldType::Date;
        if (isDate && !text::TextToDate(statement.Values()[k], plan.currentYear)) return &plan.columns[k];
    }
    return nullptr;
}

RefusedRow ExplainValue(const Fault& fault, const InsertStatement& statement, const SourceGrid& grid,
                        int row) {
    const bool isTooLong = fault.number == fault::kTooLong;
    const MappedColumn* blamed = BlamedColumn(fault, statement);
    if (blamed == nullptr || (!isTooLong && fault.number != fault::kTypeMismatch))
        return {.reason = fault.description};
    const DestinationField& field = blamed->field;
    const std::string_view cell = text::TrimView(grid.TextMatrix(row, blamed->gridColumn));
    RefusedRow refused = Reason(isTooLong                       ? "too long for"
                                : field.type == FieldType::Date ? "no date in"
                                                                : "no number in",
                                field, cell);
    const std::string& value =
        statement.Values()[static_cast<std::size_t>(blamed - statement.Plan().columns.data())];
    if (value != cell) refused.reason += " (sent as " + value + ")";
    return refused;
}

}  // namespace

bool LoadOutcome::HasErrors() const {
    return std::any_of(refused.begin(), refused.end(), [](const RefusedRow& row) { return !row.isBlank; });
}

std::string SummaryText(const LoadOutcome& outcome) {
    constexpr std::size_t kRowsNamed = 8;
    struct Group {
        std::string reason;
        std::vector<long> rows;
    };
    std::vector<Group> groups;
    for (const RefusedRow& refused : outcome.refused) {
        // Without the value, which differs from row to row.
        const std::string reason = refused.reason.substr(0, refused.reason.find(": "));
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const Group& known) { return known.reason == reason; });
        if (group == groups.end()) group = groups.insert(groups.end(), {reason, {}});
        group->rows.push_back(refused.row);
    }
    std::stable_sort(groups.begin(), groups.end(),
                     [](const Group& a, const Group& b) { return a.rows.size() > b.rows.size(); });

    std::string text = text::IntegerText(outcome.rows) + (outcome.rows == 1 ? " row: " : " rows: ") +
                       text::IntegerText(outcome.written) + " written, " +
                       text::IntegerText(outcome.rows - outcome.written) + " refused";
    for (const Group& group : groups) {
        text += "\n" + text::IntegerText(static_cast<std::int64_t>(group.rows.size())) + " x " +
                group.reason + (group.rows.size() == 1 ? " (row" : " (rows");
        for (std::size_t i = 0; i < std::min(group.rows.size(), kRowsNamed); ++i)
            text += (i == 0 ? " " : ", ") + text::IntegerText(group.rows[i]);
        text += group.rows.size() > kRowsNamed ? ", ...)" : ")";
    }
    return text;
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
            return ExplainValue(fault, statement, grid, row);
    }
}

}  // namespace zenvora::importing
