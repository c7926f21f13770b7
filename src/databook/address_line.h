#pragma once

#include <string>
#include <string_view>

/// The free line of city, state and zip that old Databooks kept in NEIGHBORHD.
namespace zenvora::databook {

/// Takes such a line apart: "DALLAS, TX 75201". What is not there is empty; a line without a comma gives
/// nothing, and a state that is no abbreviation of the state list is left out. Faults: none.
void GetFULLCityStateZIP(std::string_view text, std::string& city, std::string& state, std::string& zip);

/// The five digits that a zip code starts with, filled up with zeros at the left; empty for a text of fewer
/// than five characters and for one that starts with no number. Faults: none.
[[nodiscard]] std::string ReturnProperZip(std::string_view text);

}  // namespace zenvora::databook
