#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Settings files in the format of the private profile functions: bracketed sections and KEY=value lines.
namespace zenvora::ini {

/// One settings file in memory. What is not changed keeps its bytes: comments, blank and unknown lines,
/// order, spelling, line ends and encoding (UTF-8 with or without its mark, Windows-1252, UTF-16 with its
/// mark).
///
/// Sections and keys are found without regard to case and outer blanks; of several of one name the first
/// counts. A value is read without outer blanks and without one pair of quotes around it. Lines that begin
/// with ";" are comments, lines without "=" are no keys. Faults: none.
class Document {
  public:
    /// The document of a file's bytes. A document of no bytes is written as UTF-8 with the line ends of the
    /// old platform.
    explicit Document(std::string_view bytes = {});

    /// The value of a key, which may be empty; nothing when the key is not there.
    [[nodiscard]] std::optional<std::string> Find(std::string_view section, std::string_view key) const;

    /// Gives a key its value; a new key goes behind the last one of its section, a new section to the end.
    /// Line breaks in the value become blanks. Nothing is stored under a name that could not be read back: an
    /// empty one, a section with "]", a key with "=" or a ";" or "[" in front. A text that Windows-1252 lacks
    /// turns the file into UTF-8. True when the document has changed: a value that reads the same already is
    /// left as it is written.
    bool Set(std::string_view section, std::string_view key, std::string_view value);

    /// Removes every section of that name with all of its lines, but for comments behind a blank line at its
    /// end, which speak of what follows. True when there was one.
    bool DeleteSection(std::string_view section);

    /// Calls `visit` with the values of PREFIX1, PREFIX2 and so on, the number filled with zeroes at its left
    /// to `width` digits, until it returns false. A key that is not there has an empty value. Cheap for long
    /// runs of keys in their order.
    void EachNumbered(std::string_view section, std::string_view prefix, std::size_t width,
                      const std::function<bool(std::string_view value)>& visit) const;

    /// The bytes of the file.
    [[nodiscard]] std::string Bytes() const;

  private:
    enum class Form { Utf8, Windows1252, Utf16 };
    enum class Kind { Blank, Comment, Unknown, Key };
    struct Line {
        std::string text;      ///< without its end
        std::string_view end;  ///< "\r\n", "\n" or nothing
        Kind kind = Kind::Blank;
        std::string key;          ///< folded
        std::size_t valueAt = 0;  ///< byte of `text`
        bool first = false;       ///< the first line of its key in the section
    };
    struct Section {
        std::string name;  ///< folded
        Line header;
        std::vector<Line> lines;
        std::unordered_map<std::string, std::size_t> keys;  ///< folded key to its first line
    };

    void AddLine(std::string_view text, std::string_view end);
    [[nodiscard]] const Section* FindSection(std::string_view folded) const;
    [[nodiscard]] Section& SectionFor(std::string_view name);
    void EndLastLine();

    [[nodiscard]] static Line KeyLine(std::string_view key, std::string_view value, std::string_view end);
    [[nodiscard]] static std::string_view ValueOf(const Line& line);

    Form form_ = Form::Utf8;
    bool marked_ = false;  ///< the mark of UTF-8 stands in front
    std::string_view lineEnd_ = "\r\n";
    std::vector<Section> sections_;  ///< the first one is what stands above all sections, and has no name
};

}  // namespace zenvora::ini
