#pragma once

#include <string>
#include <string_view>

/// The primitive conversions that the whole program stands on.
namespace zenvora::common {

/// Upper case, then trimmed.
[[nodiscard]] std::string UpTrim(std::string_view text);
/// Trims in place and adds a trailing "\" unless the text is empty; returns it.
std::string CkRSlash(std::string& text);
[[nodiscard]] std::string CkRSlash(std::string_view text);
/// Every occurrence of `from` replaced; a replacement is never scanned again. When only blanks follow the
/// last hit they are dropped. A text without `from` comes back unchanged.
[[nodiscard]] std::string ReplaceChar(std::string_view text, std::string_view from, std::string_view to);
/// Text to number at single precision: digits, "-" and "." are kept, the rest is dropped; "", "-", "." and
/// "-." are 0; the value passes through a float, so whole numbers are exact up to 16,777,216. What does not
/// convert is 0.
[[nodiscard]] double CDouble(std::string_view text);

}  // namespace zenvora::common
