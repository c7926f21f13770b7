#pragma once

#include <string_view>

#include "common/session.h"
#include "platform/ado/adodc.h"

/// What the user does to the flag SELECTED of one record: excluding it and taking it back in.
namespace zenvora::analysis {

/// The flag after a double click on it: "1" and "3" become "2", "2" becomes "3"; every other flag, such as
/// the "0" of an invalid record, stays. Faults: none.
[[nodiscard]] std::string_view ToggledFlag(std::string_view flag) noexcept;

/// A double click on the flag of the current record. Without records, and on a Null flag, nothing happens and
/// the answer is false: only after a true the record views are to be opened anew. Faults: 91, 3021, 3265,
/// those of writing.
bool ToggleSelection(common::Session& session, ado::Adodc& adoDatabook);

enum class Inclusion { Excluded, Included };
enum class SelectionOutcome {
    Changed,
    AlreadySo,
    Refused,  ///< an invalid record, or one that no run has judged: it can be neither forced in nor excluded
};

/// Brings the current record to the wanted state by the double click, if it is not in it already. Faults: as
/// ToggleSelection; 3021 also without records.
SelectionOutcome SetInclusion(common::Session& session, ado::Adodc& adoDatabook, Inclusion wanted);

}  // namespace zenvora::analysis
