#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The sort order "General" of Access 97, over the bytes of code page 1252.
namespace zenvora::jet::detail {

/// Appends the key bytes of a text, without the flag byte in front. Case and trailing blanks do not count;
/// accents only break ties. Looks at the first 255 characters.
///
/// Returns the first character that code page 1252 lacks, 0 when it has all. A key with such a character must
/// not be used.
char32_t AppendGeneral97Key(std::string_view text, bool ascending, std::string& key);

}  // namespace zenvora::jet::detail
