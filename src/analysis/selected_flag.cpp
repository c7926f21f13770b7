#include "analysis/selected_flag.h"

#include "platform/fault.h"
#include "platform/text/number.h"

namespace zenvora::analysis {

int SelectedColumn(const ado::Recordset& records) {
    const int column = records.FieldIndex("SELECTED");
    if (column < 0) {
        throw Fault{
            fault::kItemNotFound,
            "The table has no column SELECTED, which holds the verdict on each record. Open the Databook "
            "with its upgrade, which adds the missing columns."};
    }
    return column;
}

std::string_view SelectedText(const ado::Recordset& records, int column, std::string& buffer) {
    const std::string_view text = records.TextView(column);
    if (!text.empty() || records.IsNull(column)) return text;
    buffer = records.Text(column);  // an old Databook may hold the flag as a number
    return buffer;
}

std::optional<double> SelectedNumber(std::string_view flag) {
    if (flag.size() == 1 && flag[0] >= '0' && flag[0] <= '9') return flag[0] - '0';
    return text::NumericValue(flag);
}

bool IsSelectedUsable(std::string_view flag) {
    const std::optional<double> value = SelectedNumber(flag);
    return value && *value >= 0 && *value <= 3;
}

bool IsSelectedUsable(const ado::Recordset& records) {
    std::string buffer;
    return IsSelectedUsable(SelectedText(records, SelectedColumn(records), buffer));
}

bool IsSelectedCounted(std::string_view flag) {
    if (!IsSelectedUsable(flag)) return false;
    return static_cast<int>(text::RoundHalfEven(*SelectedNumber(flag))) % 2 == 1;
}

}  // namespace zenvora::analysis
