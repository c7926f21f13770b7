#include "records/rich_text_file.h"

#include <gtest/gtest.h>
#include <string>

namespace zenvora::records {
namespace {

using controls::RichAlign;
using controls::RichParagraph;
using controls::RichRun;

std::vector<RichRun> RunsOf(std::string_view rtf) {
    const std::vector<RichParagraph> paragraphs = ReadRichText(rtf);
    return paragraphs.size() == 1 ? paragraphs[0].runs : std::vector<RichRun>{};
}

std::string TextOf(std::string_view rtf) {
    controls::RichText panel{"panel"};
    panel.SetParagraphs(ReadRichText(rtf));
    return panel.Text();
}

TEST(RichTextFile, ParagraphsAndBareText) {
    EXPECT_EQ(TextOf("{\\rtf1 one\\par two\\par\\par four}"), "one\ntwo\n\nfour");
    EXPECT_EQ(TextOf("{\\rtf1 one\\par}"), "one") << "the end of the last paragraph is no empty one";
    EXPECT_EQ(TextOf("  \r\n{\\rtf1 line\r\nends in the file are none}"), "lineends in the file are none");
    EXPECT_EQ(TextOf("{\\rtf1 a\\line b\\tab c\\\nd}"), "a\nb\tc\nd");
}

TEST(RichTextFile, Looks) {
    const auto runs = RunsOf("{\\rtf1 plain {\\b bold}\\i both {\\ul\\fs28 large}\\i0\\b0 end}");
    ASSERT_EQ(runs.size(), 5U);
    EXPECT_EQ(runs[0], (RichRun{"plain "}));
    EXPECT_EQ(runs[1], (RichRun{"bold", true}));
    EXPECT_EQ(runs[2], (RichRun{"both ", false, true}));
    EXPECT_EQ(runs[3], (RichRun{"large", false, true, true, 14}));
    EXPECT_EQ(runs[4], (RichRun{"end"}));
    EXPECT_EQ(RunsOf("{\\rtf1\\b\\i\\ul\\fs40 x\\plain y}").at(1), (RichRun{"y"}));
}

TEST(RichTextFile, Colours) {
    const auto runs = RunsOf(
        "{\\rtf1{\\colortbl;\\red255\\green0\\blue16;\\red0\\green0\\blue0;}"
        "a{\\cf1 b}{\\cf2 c}{\\cf9 d}{\\cf-1 e}}");
    ASSERT_EQ(runs.size(), 3U);
    EXPECT_FALSE(runs[0].color);
    EXPECT_EQ(runs[1].color, controls::Color{0xFF0010});
    EXPECT_EQ(runs[2].text, "cde") << "black and what is not in the table are the panel's own colour";
}

TEST(RichTextFile, ShapesOfParagraphs) {
    const auto paragraphs =
        ReadRichText("{\\rtf1\\qc\\sb60\\sa120 a\\par\\pard\\li360\\fi-220 b\\par\\qr c\\par\\pard d}");
    ASSERT_EQ(paragraphs.size(), 4U);
    EXPECT_EQ(paragraphs[0].align, RichAlign::Center);
    EXPECT_EQ(paragraphs[0].spaceBefore, 60);
    EXPECT_EQ(paragraphs[0].spaceAfter, 120);
    EXPECT_EQ(paragraphs[1].indent, 360);
    EXPECT_EQ(paragraphs[1].firstIndent, -220);
    EXPECT_EQ(paragraphs[1].align, RichAlign::Left);
    EXPECT_EQ(paragraphs[2].align, RichAlign::Right);
    EXPECT_EQ(paragraphs[3].indent, 0);
}

TEST(RichTextFile, Characters) {
    EXPECT_EQ(TextOf("{\\rtf1 \\{\\}\\\\}"), "{}\\");
    EXPECT_EQ(TextOf("{\\rtf1 caf\\'e9 \\'80}"), "caf\u00e9 \u20ac");
    EXPECT_EQ(TextOf("{\\rtf1 caf\xE9}"), "caf\u00e9");
    EXPECT_EQ(TextOf("{\\rtf1 \\u8364?5 \\u-4064 ?x}"),
              "\u20ac"
              "5 \uf020x");
    EXPECT_EQ(TextOf("{\\rtf1\\uc2 \\u8364 EUR}"), "\u20acR");
    EXPECT_EQ(TextOf("{\\rtf1\\uc0 \\u8364 EUR}"),
              "\u20ac"
              "EUR");
    EXPECT_EQ(TextOf("{\\rtf1 \\u8364\\'80!}"), "\u20ac!") << "the fallback may be a byte";
    EXPECT_EQ(TextOf("{\\rtf1 \\u-10179?\\u-8704?}"), "\U0001f600");
    EXPECT_EQ(TextOf("{\\rtf1 \\u-10179?x}"), "\ufffdx") << "half a character";
    EXPECT_EQ(TextOf("{\\rtf1 \\ldblquote a\\rdblquote \\emdash \\bullet\\~b}"),
              "\u201ca\u201d\u2014\u2022\u00a0b");
}

TEST(RichTextFile, PassesOverWhatIsNoTextOfThePage) {
    EXPECT_EQ(TextOf("{\\rtf1{\\fonttbl{\\f0 Arial;}}{\\stylesheet{\\s0 Normal;}}{\\info{\\title T}}"
                     "{\\*\\generator W;}{\\pict\\wmetafile8 0102ff}text{\\*\\unknown{\\b x}}\\foo12 !}"),
              "text!");
    EXPECT_EQ(TextOf("{\\rtf1 {\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt link}} {\\v hidden}end}"),
              "link end");
    EXPECT_EQ(TextOf(std::string("{\\rtf1 a\\bin5 }}}}}b}")), "ab");
}

TEST(RichTextFile, AFileOfAnotherKindIsThePlainTextThatItIs) {
    EXPECT_EQ(TextOf("one\r\ntwo\n\nfour"), "one\ntwo\n\nfour");
    EXPECT_EQ(TextOf("caf\xE9"), "caf\u00e9");
    EXPECT_EQ(TextOf(std::string_view("a\0b\x01", 4)), "ab");
    EXPECT_TRUE(ReadRichText("").empty());
    EXPECT_EQ(TextOf("{\\rt"), "{\\rt");
}

TEST(RichTextFile, ABrokenFileIsReadAsFarAsItMakesSense) {
    EXPECT_EQ(TextOf("{\\rtf1 text"), "text");
    EXPECT_EQ(TextOf("{\\rtf1 text\\"), "text");
    EXPECT_EQ(TextOf("{\\rtf1 text\\'e"), "texte");
    EXPECT_EQ(TextOf("{\\rtf1 text\\u"), "text");
    EXPECT_EQ(TextOf("{\\rtf1 text} and what follows}"), "text");
    EXPECT_EQ(TextOf("{\\rtf1\\bin99999999 x"), "");
    EXPECT_EQ(TextOf("{\\rtf1\\bin-5 x}"), "x");
    EXPECT_EQ(TextOf("{\\rtf1\\fs99999999999999999999 x}"), "x");
}

TEST(RichTextFile, DeepNestingKeepsItsTextAndItsEnd) {
    const std::string deep(100000, '{');
    const std::string up(100000, '}');
    EXPECT_EQ(TextOf("{\\rtf1 a" + deep + "b" + up + "c}d"), "abc");
}

TEST(RichTextFile, StaysSmallWhateverTheFileAsksFor) {
    std::string many = "{\\rtf1 ";
    for (int i = 0; i < 100000; ++i)
        many += "\\par";
    EXPECT_LE(ReadRichText(many).size(), 20000U);
    EXPECT_LE(ReadRichText(std::string(100000, '\n')).size(), 20000U);
}

}  // namespace
}  // namespace zenvora::records
