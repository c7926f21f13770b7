#include "records/rich_text_file.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace zenvora::records {
namespace {

using controls::Color;
using controls::RichAlign;
using controls::RichParagraph;
using controls::RichRun;

constexpr std::size_t kMostParagraphs = 20000;
constexpr std::size_t kDeepestGroup = 200;
constexpr std::size_t kMostColors = 256;
constexpr int kLargestNumber = 10'000'000;
constexpr int kWidestIndent = 14400;  // twips: ten inches
constexpr int kWidestGap = 2880;
constexpr int kLargestSize = 144;  // half points

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int HexDigit(char c) {
    if (IsDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

enum class Target { Text, Colors, Nothing };

/// What a group takes over from the one around it, and gives back at its end.
struct Look {
    Target target = Target::Text;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool hidden = false;
    int size = 0;             ///< half points
    int color = 0;            ///< place in the table of colours
    int fallbackLength = 1;   ///< characters that stand behind a Unicode one for readers that have none
    RichParagraph paragraph;  ///< without runs
};

struct Symbol {
    std::string_view word;
    std::string_view text;
};

constexpr std::array kSymbols{
    Symbol{"tab", "\t"},        Symbol{"cell", "\t"},          Symbol{"bullet", "\u2022"},
    Symbol{"emdash", "\u2014"}, Symbol{"endash", "\u2013"},    Symbol{"lquote", "\u2018"},
    Symbol{"rquote", "\u2019"}, Symbol{"ldblquote", "\u201C"}, Symbol{"rdblquote", "\u201D"},
};

/// Groups whose text is no text of the page.
constexpr std::array<std::string_view, 25> kUnseen{
    "fonttbl",           "stylesheet", "info",       "pict",      "object",  "header",
    "headerl",           "headerr",    "headerf",    "footer",    "footerl", "footerr",
    "footerf",           "footnote",   "annotation", "listtable", "revtbl",  "rsidtbl",
    "listoverridetable", "filetbl",    "themedata",  "datastore", "xe",      "tc",
    "fldinst",
};

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    std::vector<RichParagraph> Read() {
        while (at_ < bytes_.size() && paragraphs_.size() < kMostParagraphs && !atEnd_)
            Step();
        EndUnicode();
        if (!runs_.empty()) EndParagraph();
        return std::move(paragraphs_);
    }

  private:
    void Step() {
        const char c = bytes_[at_++];
        switch (c) {
            case '{':
                Open();
                break;
            case '}':
                Close();
                break;
            case '\\':
                Control();
                break;
            case '\r':
            case '\n':
                break;
            default:
                Byte(c);
        }
    }

    void Open() {
        // Deeper than any program writes: the look of such a group runs on, and its end is still found.
        if (outer_.size() < kDeepestGroup) {
            outer_.push_back(look_);
        } else {
            ++tooDeep_;
        }
        fallbackLeft_ = 0;
        atGroupStart_ = true;
    }

    void Close() {
        fallbackLeft_ = 0;
        atGroupStart_ = false;
        if (tooDeep_ > 0) {
            --tooDeep_;
        } else if (!outer_.empty()) {
            look_ = std::move(outer_.back());
            outer_.pop_back();
            // Behind the last brace there is nothing that belongs to the file.
            atEnd_ = outer_.empty();
        }
    }

    void Control() {
        if (at_ >= bytes_.size()) return;
        const char c = bytes_[at_];
        if (IsLetter(c)) return Word();
        ++at_;
        const bool starts = std::exchange(atGroupStart_, false);
        switch (c) {
            case '\'': {
                const int high = at_ < bytes_.size() ? HexDigit(bytes_[at_]) : -1;
                const int low = at_ + 1 < bytes_.size() ? HexDigit(bytes_[at_ + 1]) : -1;
                if (high < 0 || low < 0) break;
                at_ += 2;
                Byte(static_cast<char>(high * 16 + low));
                break;
            }
            case '*':
                // What a reader may leave out.
                if (starts) look_.target = Target::Nothing;
                break;
            case '\r':
            case '\n':
                Paragraph();
                break;
            case '~':
                Characters("\u00A0");
                break;
            case '_':
                Characters("\u2011");
                break;
            case '-':
                break;
            default:
                Byte(c);
        }
    }

    void Word() {
        const std::size_t start = at_;
        while (at_ < bytes_.size() && IsLetter(bytes_[at_]))
            ++at_;
        const std::string_view word = bytes_.substr(start, at_ - start);
        std::optional<int> number;
        const bool negative = at_ + 1 < bytes_.size() && bytes_[at_] == '-' && IsDigit(bytes_[at_ + 1]);
        if (negative) ++at_;
        while (at_ < bytes_.size() && IsDigit(bytes_[at_])) {
            number = std::min(number.value_or(0) * 10 + (bytes_[at_] - '0'), kLargestNumber);
            ++at_;
        }
        if (negative) number = -number.value_or(0);
        if (at_ < bytes_.size() && bytes_[at_] == ' ') ++at_;
        Do(word, number);
        atGroupStart_ = false;
    }

    void Do(std::string_view word, std::optional<int> number) {
        if (word == "bin") {
            // Bytes that are no text, a picture mostly.
            at_ += std::min(static_cast<std::size_t>(std::max(number.value_or(0), 0)), bytes_.size() - at_);
            return;
        }
        if (atGroupStart_ && ChooseTarget(word)) return;
        if (look_.target == Target::Colors) return ColorPart(word, number.value_or(0));
        if (look_.target == Target::Nothing) return;
        if (word == "u") return Unicode(number.value_or(0));
        if (word == "par" || word == "line" || word == "page" || word == "sect" || word == "row")
            return Paragraph();
        for (const Symbol& symbol : kSymbols) {
            if (word == symbol.word) return Characters(symbol.text);
        }
        EndUnicode();
        if (!SetLook(word, number)) SetParagraph(word, number.value_or(0));
    }

    /// True when the group that begins with this word is none of text.
    bool ChooseTarget(std::string_view word) {
        if (look_.target != Target::Text) return false;
        if (word == "colortbl") {
            look_.target = Target::Colors;
        } else if (std::find(kUnseen.begin(), kUnseen.end(), word) != kUnseen.end()) {
            look_.target = Target::Nothing;
        } else {
            return false;
        }
        return true;
    }

    void ColorPart(std::string_view word, int number) {
        const auto part = static_cast<Color>(std::clamp(number, 0, 255));
        const auto put = [&](int shift) {
            nextColor_ = (nextColor_.value_or(0) & ~(0xFFU << shift)) | (part << shift);
        };
        if (word == "red") put(16);
        if (word == "green") put(8);
        if (word == "blue") put(0);
    }

    bool SetLook(std::string_view word, std::optional<int> number) {
        const bool on = number.value_or(1) != 0;
        if (word == "b") {
            look_.bold = on;
        } else if (word == "i") {
            look_.italic = on;
        } else if (word == "ul") {
            look_.underline = on;
        } else if (word == "ulnone") {
            look_.underline = false;
        } else if (word == "v") {
            look_.hidden = on;
        } else if (word == "fs") {
            look_.size = std::clamp(number.value_or(0), 0, kLargestSize);
        } else if (word == "cf") {
            look_.color = number.value_or(0);
        } else if (word == "uc") {
            look_.fallbackLength = std::clamp(number.value_or(1), 0, 255);
        } else if (word == "plain") {
            look_.bold = look_.italic = look_.underline = look_.hidden = false;
            look_.size = 0;
            look_.color = 0;
        } else {
            return false;
        }
        return true;
    }

    void SetParagraph(std::string_view word, int number) {
        RichParagraph& paragraph = look_.paragraph;
        if (word == "pard") {
            paragraph = {};
        } else if (word == "ql" || word == "qj") {
            paragraph.align = RichAlign::Left;
        } else if (word == "qc") {
            paragraph.align = RichAlign::Center;
        } else if (word == "qr") {
            paragraph.align = RichAlign::Right;
        } else if (word == "li") {
            paragraph.indent = std::clamp(number, 0, kWidestIndent);
        } else if (word == "fi") {
            paragraph.firstIndent = std::clamp(number, -kWidestIndent, kWidestIndent);
        } else if (word == "sb") {
            paragraph.spaceBefore = std::clamp(number, 0, kWidestGap);
        } else if (word == "sa") {
            paragraph.spaceAfter = std::clamp(number, 0, kWidestGap);
        }
    }

    void Byte(char c) {
        if (fallbackLeft_ > 0) {
            --fallbackLeft_;
            return;
        }
        atGroupStart_ = false;
        if (look_.target == Target::Colors) {
            if (c == ';' && colors_.size() < kMostColors) colors_.push_back(std::exchange(nextColor_, {}));
            return;
        }
        if (static_cast<unsigned char>(c) >= ' ' && c != '\x7F') {
            Characters(text::FromWindows1252({&c, 1}));
        } else if (c == '\t') {
            Characters("\t");
        }
    }

    void Unicode(int number) {
        // Written as a signed number of 16 bits; what lies beyond 16 bits comes as two halves.
        const auto unit = static_cast<char16_t>(number);
        const bool isFirstHalf = unit >= 0xD800 && unit < 0xDC00;
        const bool isSecondHalf = unit >= 0xDC00 && unit < 0xE000;
        fallbackLeft_ = 0;
        if (isFirstHalf) {
            EndUnicode();
            firstHalf_ = unit;
        } else if (isSecondHalf && firstHalf_ != 0) {
            const std::array<char16_t, 2> halves{std::exchange(firstHalf_, u'\0'), unit};
            Append(text::FromUtf16({halves.data(), halves.size()}));
        } else if (unit >= u' ') {
            Characters(text::FromUtf16({&unit, 1}));
        }
        fallbackLeft_ = look_.fallbackLength;
    }

    /// A first half without its second.
    void EndUnicode() {
        const char16_t half = std::exchange(firstHalf_, u'\0');
        if (half != 0) Append(text::FromUtf16({&half, 1}));
    }

    void Characters(std::string_view characters) {
        if (fallbackLeft_ > 0) {
            --fallbackLeft_;
            return;
        }
        EndUnicode();
        Append(characters);
    }

    void Append(std::string_view characters) {
        if (look_.target != Target::Text || look_.hidden) return;
        const float size = static_cast<float>(look_.size) / 2;
        std::optional<Color> color;
        const auto place = static_cast<std::size_t>(std::max(look_.color, 0));
        if (place < colors_.size() && colors_[place] != Color{0}) color = colors_[place];
        const bool goesOn = !runs_.empty() && runs_.back().bold == look_.bold &&
                            runs_.back().italic == look_.italic &&
                            runs_.back().underline == look_.underline && runs_.back().size == size &&
                            runs_.back().color == color;
        if (!goesOn) runs_.push_back({{}, look_.bold, look_.italic, look_.underline, size, color});
        runs_.back().text += characters;
    }

    void Paragraph() {
        EndUnicode();
        if (look_.target == Target::Text && !look_.hidden) EndParagraph();
    }

    void EndParagraph() {
        RichParagraph paragraph = look_.paragraph;
        paragraph.runs = std::move(runs_);
        runs_.clear();
        paragraphs_.push_back(std::move(paragraph));
    }

    std::string_view bytes_;
    std::size_t at_ = 0;
    bool atEnd_ = false;
    bool atGroupStart_ = false;
    Look look_;
    std::vector<Look> outer_;
    std::size_t tooDeep_ = 0;
    std::vector<std::optional<Color>> colors_;
    std::optional<Color> nextColor_;
    int fallbackLeft_ = 0;
    char16_t firstHalf_ = 0;
    std::vector<RichRun> runs_;
    std::vector<RichParagraph> paragraphs_;
};

std::vector<RichParagraph> PlainText(std::string_view bytes) {
    std::vector<RichParagraph> paragraphs;
    const std::string text = text::Decode(bytes).text;
    std::string line;
    const auto end = [&] {
        RichParagraph& paragraph = paragraphs.emplace_back();
        if (!line.empty()) paragraph.runs.push_back({std::exchange(line, {})});
    };
    for (std::size_t at = 0; at < text.size() && paragraphs.size() < kMostParagraphs;) {
        const char32_t character = text::NextCharacter(text, at);
        if (character == '\n') {
            end();
        } else if (character >= ' ' || character == '\t') {
            text::AppendCharacter(line, character);
        }
    }
    if (!line.empty()) end();
    return paragraphs;
}

}  // namespace

std::vector<RichParagraph> ReadRichText(std::string_view bytes) {
    const std::size_t start = bytes.find_first_not_of(" \t\r\n");
    const bool isRichText = start != std::string_view::npos && bytes.substr(start).starts_with("{\\rtf");
    return isRichText ? Reader{bytes.substr(start)}.Read() : PlainText(bytes);
}

}  // namespace zenvora::records
