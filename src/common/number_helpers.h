#pragma once

#include <cstdint>
#include <string>

/// Text to whole numbers. Bad input gives 0 and is never reported. Faults: none.
namespace zenvora::common {

/// The 16-bit number of a text, halves to even; 0 when the text is not numeric or the number is out of range.
/// The text is upper-cased and trimmed in place.
std::int16_t CInteger(std::string& text);
/// The same, 32 bits.
std::int32_t CLong(std::string& text);

/// The digits of a price up to its first point: separators and "$" drop out, decimals are cut. "0" when the
/// text is not numeric, empty when it is not above 0. The text is trimmed in place.
std::string PriceDigits(std::string& text);

}  // namespace zenvora::common
