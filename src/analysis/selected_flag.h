#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ado/recordset.h"

/// The flag SELECTED, stored as text and compared as a number: "0" invalid, "1" valid, "2" excluded by the
/// user, "3" included by the user.
namespace zenvora::analysis {

/// Position of the column SELECTED. Fault 3265: the table has none, so nothing can be checked or calculated.
[[nodiscard]] int SelectedColumn(const ado::Recordset& records);

/// The flag of the current record as text, empty for Null. The view is into the record or into `buffer` and
/// lasts until either changes. Fault 3021: no current record.
[[nodiscard]] std::string_view SelectedText(const ado::Recordset& records, int column, std::string& buffer);

/// The value of a flag, nothing when it is empty or not numeric. Faults: none.
[[nodiscard]] std::optional<double> SelectedNumber(std::string_view flag);

/// True for a flag that is numeric and from 0 to 3; Null reads as the empty text and is not. Faults: none.
[[nodiscard]] bool IsSelectedUsable(std::string_view flag);
/// The same for the current record. Faults 3021, 3265.
[[nodiscard]] bool IsSelectedUsable(const ado::Recordset& records);

/// True when a record with this flag takes part in the calculation: usable and odd as a whole number.
[[nodiscard]] bool IsSelectedCounted(std::string_view flag);

}  // namespace zenvora::analysis
