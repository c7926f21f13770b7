#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/fault.h"
#include "platform/files/host_file.h"

namespace zenvora::importing {

/// Last row of a source's grid, and last position in a line, that the program counts to.
inline constexpr int kLastRow = 32767;
inline constexpr std::size_t kLastPosition = 32767;

/// The place of a fault in a file; line 0 means the whole of it.
[[nodiscard]] Place PlaceIn(const std::string& file, long line = 0);

/// The text of a source file: UTF-8 or Windows-1252, without carriage returns and NUL characters, which no
/// line keeps wherever they stand. Faults: as files::ReadWholeFile; 20002 for more than 2 GB.
[[nodiscard]] std::string ReadSourceText(files::HostDisk& disk, const std::filesystem::path& path);
[[nodiscard]] std::string SourceTextOf(std::string_view bytes);

/// Cuts a source text into its lines. The end is noticed by a read that finds nothing more: a text that ends
/// in a line feed gives one further, empty line, and the empty text gives one empty line.
class LineReader {
  public:
    explicit LineReader(std::string_view text) : text_(text) {}

    /// The next line without its line feed; empty at the end.
    [[nodiscard]] std::string_view ReadRawLine();
    [[nodiscard]] bool AtEnd() const noexcept { return atEnd_; }
    /// Number of the line read last, from 1; 0 before the first.
    [[nodiscard]] long LineNumber() const noexcept { return lineNumber_; }

  private:
    std::string_view text_;
    bool atEnd_ = false;
    long lineNumber_ = 0;
};

/// Fault 6 when byte `at` of the line is a character beyond position 32,767.
void CheckPosition(std::string_view line, std::size_t at);
/// The line without its first `count` characters.
[[nodiscard]] std::string_view WithoutFirst(std::string_view line, std::size_t count);

}  // namespace zenvora::importing
