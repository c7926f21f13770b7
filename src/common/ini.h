#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/session.h"

/// Access to settings files by their text paths. A path that is empty or holds a "|" names no usable file,
/// and so does one that leads nowhere: read, every key gives its default; written, nothing is stored and
/// nobody is told. Faults: none, unless stated.
namespace zenvora::common {

/// The value of a key, or the default (without blanks at its end) when the key is not there; a key that is
/// there and empty gives the empty text. Fault 6: a value of 32,510 characters or more.
[[nodiscard]] std::string ReadIni(Session& session, std::string_view file, std::string_view section,
                                  std::string_view key, std::string_view defaultValue = {});

/// Stores a value; what the file holds besides stays as it is. See ini::Document::Set for names that cannot
/// be stored.
void WriteIni(Session& session, std::string_view file, std::string_view section, std::string_view key,
              std::string_view value);
/// The same for several keys of a section, which are stored together or not at all.
void WriteIni(Session& session, std::string_view file, std::string_view section,
              const std::vector<std::pair<std::string, std::string>>& values);

/// Removes a section with all of its keys.
void DeleteSection(Session& session, std::string_view file, std::string_view section);
/// Gives a section these keys and no others, together or not at all.
void ReplaceSection(Session& session, std::string_view file, std::string_view section,
                    const std::vector<std::pair<std::string, std::string>>& values);

/// True when a value of the keys PREFIX1, PREFIX2 and so on, up to the first empty one, equals `value`, both
/// trimmed; case counts. False when the file does not exist.
[[nodiscard]] bool IniFindValue(Session& session, std::string_view file, std::string_view section,
                                std::string_view prefix, std::string_view value);
/// The first number from 1 whose key is empty; 0 when the file does not exist.
[[nodiscard]] long IniNextFree(Session& session, std::string_view file, std::string_view section,
                               std::string_view prefix);
/// The values of PREFIX1 to PREFIX`count`, empty ones included; with a negative count those up to the first
/// empty one. With a `width` the numbers are filled with zeroes at their left to as many digits, and values
/// come trimmed.
[[nodiscard]] std::vector<std::string> IniList(Session& session, std::string_view file,
                                               std::string_view section, std::string_view prefix, long count,
                                               std::size_t width = 0);
/// Adds those values to a list box or combo box, behind what it holds.
template <class List>
void IniFillList(Session& session, List& list, std::string_view file, std::string_view section,
                 std::string_view prefix, long count) {
    list.AddItems(IniList(session, file, section, prefix, count));
}

/// A setting that is on or off: only the trimmed text "0" is off.
[[nodiscard]] bool IniBool(std::string_view value);

}  // namespace zenvora::common
