#include "analysis/comps_grid.h"

#include <array>
#include <string_view>

#include "platform/jet/value.h"
#include "platform/text/utf8.h"

namespace zenvora::analysis {
namespace {

using controls::GridColumn;

/// How a column shows a missing value.
enum class Missing { Nothing, Flag, FewSpellings, ManySpellings, Zero };

struct Column {
    std::string_view caption;
    std::string_view field;
    int width;
    Missing missing;
};

constexpr std::array<Column, 10> kColumns{{
    {"", "SELECTED", 355, Missing::Flag},
    {"Address", "CENTRALKEY", 2295, Missing::Nothing},
    {"Orig List Dt", "ORIGLISTDATE", 975, Missing::FewSpellings},
    {"Orig List $", "ORIGLISTPRICE", 975, Missing::Zero},
    {"Curr List Dt", "LASTLISTDATE", 975, Missing::ManySpellings},
    {"Curr List $", "LASTLISTPRICE", 975, Missing::Zero},
    {"Cont Dt", "CONTRACTDATE", 975, Missing::ManySpellings},
    {"List Canc Dt", "LISTCANCELDATE", 975, Missing::FewSpellings},
    {"Sale Dt", "SALEDATE", 975, Missing::ManySpellings},
    {"Sale $", "SELLINGPR", 975, Missing::Zero},
}};

std::vector<GridColumn::ValueItem> ShownAsNothing(std::initializer_list<const char*> values) {
    std::vector<GridColumn::ValueItem> items;
    for (const char* value : values)
        items.push_back({value, ""});
    return items;
}

std::vector<GridColumn::ValueItem> ItemsOf(Missing missing) {
    switch (missing) {
        case Missing::Nothing:
            return {};
        case Missing::Flag:
            return {{"0", std::string(kPictureInvalid)},
                    {"1", std::string(kPictureValid)},
                    {"2", ""},
                    {"3", std::string(kPictureValid)}};
        case Missing::FewSpellings:
            return ShownAsNothing({"01/01/1900", "1/1/1900"});
        case Missing::ManySpellings:
            return ShownAsNothing({"1900-01-01", "1900-1-1", "01-01-1900", "1-1-1900", "1900/01/01",
                                   "1900/1/1", "01/01/1900", "1/1/1900"});
        case Missing::Zero:
            break;
    }
    return ShownAsNothing({"0"});
}

}  // namespace

std::vector<GridColumn> CompsGridColumns() {
    std::vector<GridColumn> columns;
    columns.reserve(kColumns.size());
    for (const Column& column : kColumns) {
        columns.push_back({.caption = std::string(column.caption),
                           .width = column.width,
                           .pictures = column.missing == Missing::Flag,
                           .rightAligned = column.missing == Missing::Zero,
                           .valueItems = ItemsOf(column.missing)});
    }
    return columns;
}

int CompsGridRows::RowCount() const {
    return control_.HasRecordset() ? static_cast<int>(control_.Recordset().RecordCount()) : 0;
}

std::optional<std::string> CompsGridRows::Value(int row, int column) const {
    if (row < 0 || row >= RowCount() || column < 0 || static_cast<std::size_t>(column) >= kColumns.size())
        return std::nullopt;
    const ado::Recordset& records = control_.Recordset();
    if (fields_.empty() || generation_ != control_.Generation()) {
        fields_.clear();
        for (const Column& entry : kColumns)
            fields_.push_back(records.FieldIndex(entry.field));
        generation_ = control_.Generation();
    }
    const int field = fields_[static_cast<std::size_t>(column)];
    if (field < 0) return std::nullopt;
    const jet::Value value = records.ValueAt(row, field);
    if (jet::IsNull(value)) return std::nullopt;
    std::string shown = jet::ValueText(value);
    // The flag is blank-padded in some files; its picture is that of the digit.
    return column == kGridFlag ? text::Trim(shown) : shown;
}

}  // namespace zenvora::analysis
