#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "common/session.h"

namespace zenvora::records {

/// The list of known places in the settings file: section CITIES, keys CITY1, CITY2 and so on.
///
/// A place is asked for at every keystroke, so the list is read once and kept, and new places are written
/// together when the user is done with a field: typing costs the same however long the list is. Faults: none;
/// a settings file that cannot be written loses the new places without a word.
class CityList {
  public:
    explicit CityList(common::Session& session) : session_(session) {}

    /// Adds a place unless it is in the list; true when it was new. Without a settings file nothing is added.
    bool Add(std::string_view place);
    /// Writes the new places under the next free numbers.
    void Store();
    /// All places, the new ones too.
    [[nodiscard]] const std::vector<std::string>& Places() const noexcept { return places_; }

  private:
    void Read();

    common::Session& session_;
    bool isRead_ = false;
    std::vector<std::string> places_;
    std::unordered_set<std::string> known_;  ///< trimmed, as the file gives them back
    std::size_t stored_ = 0;                 ///< so many of the places are in the file
};

}  // namespace zenvora::records
