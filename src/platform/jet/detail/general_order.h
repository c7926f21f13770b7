#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The sort order "General" (language 1033, version 0) that Access gives its text indexes.
namespace zenvora::jet::detail {

/// Appends the key bytes of a text, without the flag byte in front. Case and trailing blanks do not count;
/// accents, hyphens and apostrophes only break ties. Looks at the first 255 characters.
///
/// Returns the first character that has no weight, 0 when all have one. A key with such a character must not
/// be stored: Access would order it differently and not find the row.
char32_t AppendGeneralKey(std::string_view text, bool ascending, std::string& key);

/// True when two texts have the same key.
[[nodiscard]] bool EqualsGeneral(std::string_view a, std::string_view b);

}  // namespace zenvora::jet::detail
