#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Small functions on text. Positions and widths count characters; "without regard to case" is as
/// text::EqualsNoCase. Faults: none.
namespace zenvora::common {

/// Trims in place and adds a trailing "|" unless the text is empty; returns it.
std::string CkRPipe(std::string& text);
/// Trims in place and drops one trailing "\"; returns the trimmed result.
std::string StripRChar(std::string& text);

/// The text on one side of the first `delimiter`, which may have any length. `side` is "L" or "R" by its
/// first letter. Empty when the delimiter is not there (case matters) or `side` is neither: callers that need
/// the whole text then must test first.
[[nodiscard]] std::string SplitFirst(std::string_view text, std::string_view side,
                                     std::string_view delimiter);
/// The text on one side of the last `delimiter`, a single character. Empty when it is not there.
[[nodiscard]] std::string SplitLast(std::string_view text, std::string_view side, std::string_view delimiter);
/// The text up to the first `delimiter`, found without regard to case; without one the text itself.
[[nodiscard]] std::string TextBefore(std::string_view text, std::string_view delimiter);
/// Right of the first `open`, then left of the first `close` in that; empty when either is missing.
[[nodiscard]] std::string TextBetween(std::string_view text, std::string_view open, std::string_view close);

/// The last `width` characters of `width` times `fill` and the trimmed text: a longer text loses its front.
[[nodiscard]] std::string PadLeft(std::string_view text, std::size_t width, std::string_view fill);
/// A whole number without blanks.
[[nodiscard]] std::string IntToText(std::int64_t number);

/// Without each `character`; where it stood between two blanks, the blank before it goes too.
[[nodiscard]] std::string RemoveCharacter(std::string_view text, char character);
/// Plain replacement, left to right.
[[nodiscard]] std::string ReplaceText(std::string_view text, std::string_view find,
                                      std::string_view replacement);
/// Each character below 32 or from 127 up becomes a blank.
[[nodiscard]] std::string CleanText(std::string_view text);

/// True for an abbreviation of the state list, which must hold the untrimmed text; its trimmed length must
/// be 2. The list has no ME and no NV, and a text such as ",A" passes.
[[nodiscard]] bool IsValidState(std::string_view text);

}  // namespace zenvora::common
