#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text as the rules count it: UTF-8 in std::string; lengths, positions and widths are characters (code
/// points). A byte that is no valid UTF-8 counts as one character and is kept as it is. Faults: none, unless
/// stated.
namespace zenvora::text {

/// Number of characters.
[[nodiscard]] std::size_t Length(std::string_view text) noexcept;

/// The first `count` characters, or all of a shorter text.
[[nodiscard]] std::string Left(std::string_view text, std::size_t count);
/// The last `count` characters, or all of a shorter text.
[[nodiscard]] std::string Right(std::string_view text, std::size_t count);
/// `count` characters from position `start`, which counts from 1; empty beyond the end.
[[nodiscard]] std::string Mid(std::string_view text, std::size_t start,
                              std::size_t count = std::string::npos);

/// Without leading and trailing blanks (U+0020 only; tabs and other spaces stay).
[[nodiscard]] std::string_view TrimView(std::string_view text) noexcept;
[[nodiscard]] std::string Trim(std::string_view text);

/// Case folding covers Latin-1, Latin Extended-A, Greek and Cyrillic; other characters stay as they are.
[[nodiscard]] std::string Upper(std::string_view text);
[[nodiscard]] std::string Lower(std::string_view text);
/// Equal without regard to case, by Upper of both.
[[nodiscard]] bool EqualsNoCase(std::string_view a, std::string_view b);

/// True when the bytes are valid UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
[[nodiscard]] bool IsUtf8(std::string_view bytes) noexcept;

/// Reads the character at byte `at` and moves `at` behind it; an invalid byte gives U+FFFD and moves by one.
[[nodiscard]] char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept;
/// Appends a character; a surrogate or a number above U+10FFFF is appended as U+FFFD.
void AppendCharacter(std::string& text, char32_t character);

/// UTF-16 and back. Unpaired surrogates become U+FFFD.
[[nodiscard]] std::u16string ToUtf16(std::string_view text);
[[nodiscard]] std::string FromUtf16(std::u16string_view text);

/// Every occurrence of `find` replaced, left to right, without looking at a replacement again. An empty
/// `find` changes nothing.
[[nodiscard]] std::string ReplaceAll(std::string_view text, std::string_view find,
                                     std::string_view replacement);

}  // namespace zenvora::text
