#include "import/source_text.h"

#include <gtest/gtest.h>

#include "grid_text.h"
#include "text_disk.h"

namespace zenvora::importing {
namespace {

std::vector<std::string> LinesOf(std::string_view bytes) {
    const std::string text = SourceTextOf(bytes);
    LineReader reader(text);
    std::vector<std::string> lines;
    while (!reader.AtEnd())
        lines.emplace_back(reader.ReadRawLine());
    return lines;
}

using Lines = std::vector<std::string>;

struct LineCase {
    const char* name;
    std::string bytes;
    Lines lines;
};
class SourceLines : public testing::TestWithParam<LineCase> {};

TEST_P(SourceLines, AreCutAtLineFeeds) {
    EXPECT_EQ(LinesOf(GetParam().bytes), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SourceLines,
    testing::Values(LineCase{"LineFeedOnly", "a\nb", {"a", "b"}},
                    LineCase{"CrLfReadsTheSame", "a\r\nb", {"a", "b"}},
                    LineCase{"LastLineFeedGivesAnEmptyLine", "a\n", {"a", ""}},
                    LineCase{"LastLineWithoutBreakIsWhole", "a\nlast", {"a", "last"}},
                    LineCase{"EmptyFileIsOneEmptyLine", "", {""}},
                    LineCase{"CrInMidTextIsLostAndSplitsNothing", "a\rb\nc", {"ab", "c"}},
                    LineCase{"NulDisappears", std::string("a\0b\nc", 5), {"ab", "c"}},
                    LineCase{"CrAloneIsNoLineEnd", "a\rb\r", {"ab"}},
                    LineCase{"ByteOrderMarkIsDropped", "\xEF\xBB\xBFname\n1", {"name", "1"}},
                    LineCase{"Windows1252IsRead", "Caf\xE9\n20\xB0", {"Caf\xC3\xA9", "20\xC2\xB0"}},
                    LineCase{"Utf8IsKept", "Caf\xC3\xA9", {"Caf\xC3\xA9"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LineReader, CountsItsLinesAndStaysEmptyAtTheEnd) {
    LineReader reader("a\nb");
    EXPECT_EQ(reader.LineNumber(), 0);
    static_cast<void>(reader.ReadRawLine());
    EXPECT_EQ(reader.LineNumber(), 1);
    EXPECT_FALSE(reader.AtEnd());
    static_cast<void>(reader.ReadRawLine());
    EXPECT_TRUE(reader.AtEnd());
    EXPECT_EQ(reader.ReadRawLine(), "");
    EXPECT_EQ(reader.LineNumber(), 2);
}

TEST(CheckPosition, CountsCharactersNotBytes) {
    std::string line;
    for (int i = 0; i < 32767; ++i)
        line += "\xC3\xA9";
    CheckPosition(line, line.size() - 2);  // position 32,767
    line += ",";
    EXPECT_EQ(testing_support::FaultOf([&] { CheckPosition(line, line.size() - 1); }).number,
              fault::kOverflow);
}

TEST(WithoutFirst, DropsCharacters) {
    EXPECT_EQ(WithoutFirst("\"\xC3\xA9x", 2), "x");
    EXPECT_EQ(WithoutFirst("ab", 3), "");
}

TEST(ReadSourceText, NamesAFileThatIsNotThere) {
    testing_support::TextDisk disk;
    const Fault fault = testing_support::FaultOf([&] { static_cast<void>(ReadSourceText(disk, "no.csv")); });
    EXPECT_EQ(fault.number, fault::kFileNotFound);
    EXPECT_EQ(fault.place.file, "no.csv");
}

}  // namespace
}  // namespace zenvora::importing
