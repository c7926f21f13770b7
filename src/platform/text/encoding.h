#pragma once

#include <string>
#include <string_view>

/// The two encodings that files come in: UTF-8 and Windows-1252.
namespace zenvora::text {

enum class Encoding { Utf8, Windows1252 };

struct Decoded {
    std::string text;  ///< UTF-8, without a byte-order mark
    Encoding encoding = Encoding::Utf8;
};

/// The bytes of a whole file as text: a UTF-8 byte-order mark is dropped; valid UTF-8 is read as UTF-8, all
/// else as Windows-1252 (its five unassigned bytes become the control characters of the same number). Faults:
/// none.
[[nodiscard]] Decoded Decode(std::string_view bytes);

/// Windows-1252 bytes to UTF-8. Faults: none.
[[nodiscard]] std::string FromWindows1252(std::string_view bytes);

/// Text in the bytes of `encoding`. A character that Windows-1252 lacks becomes "?". Faults: none.
[[nodiscard]] std::string Encode(std::string_view text, Encoding encoding);

/// True when every character of the text exists in Windows-1252.
[[nodiscard]] bool FitsWindows1252(std::string_view text);

}  // namespace zenvora::text
