#include "analysis/selection_toggle.h"

#include <string>

#include "analysis/selected_flag.h"
#include "databook/field_access.h"

namespace zenvora::analysis {

std::string_view ToggledFlag(std::string_view flag) noexcept {
    if (flag == "1" || flag == "3") return "2";
    if (flag == "2") return "3";
    return flag;
}

bool ToggleSelection(common::Session& session, ado::Adodc& adoDatabook) {
    ado::Recordset& records = adoDatabook.Recordset();
    if (records.RecordCount() <= 0) return false;
    const int column = SelectedColumn(records);
    if (records.IsNull(column)) return false;
    std::string buffer;
    const std::string flag{SelectedText(records, column, buffer)};
    const std::string_view toggled = ToggledFlag(flag);
    if (toggled != flag) databook::AdoSetField(session, adoDatabook, toggled, "SELECTED");
    if (records.Edit() != ado::EditMode::None) records.Update();
    return true;
}

SelectionOutcome SetInclusion(common::Session& session, ado::Adodc& adoDatabook, Inclusion wanted) {
    const ado::Recordset& records = adoDatabook.Recordset();
    std::string buffer;
    const std::string flag{SelectedText(records, SelectedColumn(records), buffer)};
    if (flag != "1" && flag != "2" && flag != "3") return SelectionOutcome::Refused;
    const bool excluded = flag == "2";
    if (excluded == (wanted == Inclusion::Excluded)) return SelectionOutcome::AlreadySo;
    ToggleSelection(session, adoDatabook);
    return SelectionOutcome::Changed;
}

}  // namespace zenvora::analysis
