#pragma once

#include <string>
#include <string_view>

#include "analysis/sorted_list.h"
#include "platform/controls/desktop.h"

/// The figures of one statistics list.
namespace zenvora::analysis {

/// The median as text: "0" of an empty list; of an odd count the middle entry as it stands; of an even count
/// half the sum of the two middle entries, always a whole number, the remainder dropped. The upper of the two
/// and the sum go through single precision, so a sum above 16,777,216 loses low digits. When one of the two
/// is not numeric, the lower one as it stands. Faults: none.
[[nodiscard]] std::string GetListMedian(const SortedList& list);

/// The sum of the numeric entries, 0 for an empty list. Each other entry is told to the user. Faults: none.
[[nodiscard]] double GetListTotal(const SortedList& list, controls::Desktop& desktop);

/// The average as a whole number, 0 for an empty list. It is rounded in two steps, first to one decimal
/// (10.45 becomes 10.5) and then to a whole number (11), and passes through single precision. Entries that
/// are not numeric are told to the user and count as 0. Faults: none.
[[nodiscard]] double GetListAverage(const SortedList& list, controls::Desktop& desktop);

/// A number with a comma between every three digits of its whole part; a text that is not numeric comes back
/// trimmed and in upper case. A leading "$" and the fraction stay as they stand. A whole part that is not
/// above 0 becomes the empty text. Faults: none.
[[nodiscard]] std::string FormatWithCommas(std::string_view text);

}  // namespace zenvora::analysis
