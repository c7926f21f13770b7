#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Text as the file stores it: UTF-16LE, or one byte a character behind the marker FF FE. Access 97 stores
/// one byte a character in the code page of the file.
namespace zenvora::jet::detail {

/// Appends the UTF-8 form of a stored text. Unpaired surrogates become U+FFFD.
void DecodeText(std::span<const std::byte> stored, std::string& out);

/// Appends the UTF-8 form of a text in `codePage`, one byte a character (Access 97); 0: as above. Of code
/// pages other than 1252 only ASCII is known. Fault 20001: another character in such a text.
void DecodeText(std::span<const std::byte> stored, std::uint16_t codePage, std::string& out);

/// Appends the stored form. Compressed when `mayCompress`, and there are 3 to 1024 characters, all of them
/// U+0001 to U+00FF; else plain UTF-16LE. A leading byte-order mark is dropped, for a plain text must not
/// begin with it.
void EncodeText(std::string_view text, bool mayCompress, std::vector<std::byte>& out);

/// UTF-16 units of a text: what the length of a column counts.
[[nodiscard]] std::size_t Utf16Length(std::string_view text);

}  // namespace zenvora::jet::detail
