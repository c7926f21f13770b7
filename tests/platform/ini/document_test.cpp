#include "platform/ini/document.h"

#include <gtest/gtest.h>

namespace zenvora::ini {
namespace {

constexpr const char* kFile =
    "; the settings of one machine\r\n"
    "lost=above all sections\r\n"
    "\r\n"
    "[Directories]\r\n"
    "AppDir = C:\\ZVR \r\n"
    "DATADIR=\r\n"
    "no key at all\r\n"
    ";DATAFILE=commented\r\n"
    "appdir=second\r\n"
    "\r\n"
    "; places\r\n"
    "[CITIES]\r\n"
    "CITY1=\"North Ashby, OH  44000\"\r\n"
    "CITY2='quoted'\r\n"
    "CITY3=\"open\r\n"
    "=nothing\r\n"
    "\r\n"
    "[directories]\r\n"
    "OTHER=1\r\n";

TEST(IniDocument, FindsSectionsAndKeysWithoutRegardToCase) {
    const Document document(kFile);
    EXPECT_EQ(document.Find("DIRECTORIES", "APPDIR"), "C:\\ZVR");
    EXPECT_EQ(document.Find("directories", " AppDir "), "C:\\ZVR");
}

TEST(IniDocument, TellsAnEmptyValueFromAMissingKey) {
    const Document document(kFile);
    EXPECT_EQ(document.Find("DIRECTORIES", "DATADIR"), "");
    EXPECT_EQ(document.Find("DIRECTORIES", "DATAFILE"), std::nullopt);
    EXPECT_EQ(document.Find("NONE", "DATADIR"), std::nullopt);
    EXPECT_EQ(document.Find("DIRECTORIES", "no key at all"), std::nullopt);
    EXPECT_EQ(document.Find("DIRECTORIES", ""), std::nullopt);
    EXPECT_EQ(document.Find("", "lost"), std::nullopt);
    EXPECT_EQ(document.Find("CITIES", ""), std::nullopt);
}

TEST(IniDocument, CountsTheFirstSectionOfANameOnly) {
    EXPECT_EQ(Document(kFile).Find("DIRECTORIES", "OTHER"), std::nullopt);
}

TEST(IniDocument, DropsOnePairOfQuotes) {
    const Document document(kFile);
    EXPECT_EQ(document.Find("CITIES", "CITY1"), "North Ashby, OH  44000");
    EXPECT_EQ(document.Find("CITIES", "CITY2"), "quoted");
    EXPECT_EQ(document.Find("CITIES", "CITY3"), "\"open");
}

TEST(IniDocument, KeepsEveryByteOfWhatIsNotChanged) {
    const std::string mixed = "a\n[S]\r\nK=1\nL=2\r\n\n\n;end";
    for (const std::string& bytes : {std::string(kFile), mixed, std::string("\xEF\xBB\xBF[S]\nK=\xC3\xA9"),
                                     std::string("[S]\nK=\xE9\x81\n"), std::string("\xEF\xBB\xBF[S]\nK=\xE9"),
                                     std::string("\r\r\n\0x", 5)})
        EXPECT_EQ(Document(bytes).Bytes(), bytes);
}

TEST(IniDocument, ChangesOneValueInItsPlace) {
    Document document(kFile);
    EXPECT_TRUE(document.Set("DIRECTORIES", "APPDIR", "C:\\NEW"));
    std::string expected = kFile;
    expected.replace(expected.find("C:\\ZVR "), 7, "C:\\NEW");
    EXPECT_EQ(document.Bytes(), expected);
}

TEST(IniDocument, LeavesAValueThatReadsTheSameAsItIsWritten) {
    Document document(kFile);
    EXPECT_FALSE(document.Set("CITIES", "city2", "quoted"));
    EXPECT_FALSE(document.Set("DIRECTORIES", "DATADIR", ""));
    EXPECT_EQ(document.Bytes(), kFile);
}

TEST(IniDocument, PutsANewKeyBehindTheLastOneOfItsSection) {
    Document document(kFile);
    EXPECT_TRUE(document.Set("directories", "USERDIR", "C:\\ME"));
    std::string expected = kFile;
    const std::string last = "appdir=second\r\n";
    expected.insert(expected.find(last) + last.size(), "USERDIR=C:\\ME\r\n");
    EXPECT_EQ(document.Bytes(), expected);
    EXPECT_EQ(document.Find("DIRECTORIES", "UserDir"), "C:\\ME");
    EXPECT_EQ(document.Find("DIRECTORIES", "APPDIR"), "C:\\ZVR");
}

TEST(IniDocument, PutsANewSectionToTheEnd) {
    Document document("[A]\nK=1");
    EXPECT_TRUE(document.Set("FORMS", "FRMMAINTOP", "0"));
    EXPECT_TRUE(document.Set("FORMS", "FRMMAINLEFT", "15"));
    EXPECT_EQ(document.Bytes(), "[A]\nK=1\n\n[FORMS]\nFRMMAINTOP=0\nFRMMAINLEFT=15\n");
}

TEST(IniDocument, StartsANewFileWithTheLineEndsOfTheOldPlatform) {
    Document document;
    EXPECT_TRUE(document.Set("DIRECTORIES", "TABLE", "COMPS"));
    EXPECT_EQ(document.Bytes(), "[DIRECTORIES]\r\nTABLE=COMPS\r\n");
}

TEST(IniDocument, PutsAKeyIntoASectionThatHasNone) {
    Document document("[A]\r\n\r\n; of B\r\n[B]");
    EXPECT_TRUE(document.Set("A", "K", "1"));
    EXPECT_TRUE(document.Set("B", "L", "2"));
    EXPECT_EQ(document.Bytes(), "[A]\r\nK=1\r\n\r\n; of B\r\n[B]\r\nL=2\r\n");
}

TEST(IniDocument, StoresNothingUnderANameThatCannotBeReadBack) {
    Document document(kFile);
    EXPECT_FALSE(document.Set("", "K", "1"));
    EXPECT_FALSE(document.Set(" ", "K", "1"));
    EXPECT_FALSE(document.Set("A]B", "K", "1"));
    EXPECT_FALSE(document.Set("A", "", "1"));
    EXPECT_FALSE(document.Set("A", ";K", "1"));
    EXPECT_FALSE(document.Set("A", "[K", "1"));
    EXPECT_FALSE(document.Set("A", "K=L", "1"));
    EXPECT_EQ(document.Bytes(), kFile);
}

TEST(IniDocument, KeepsALineBreakOutOfAValue) {
    Document document;
    EXPECT_TRUE(document.Set("A", "K", "one\r\n[B]\nL=2"));
    EXPECT_EQ(document.Bytes(), "[A]\r\nK=one  [B] L=2\r\n");
}

TEST(IniDocument, KeepsTheEncodingOfTheFile) {
    Document old("[A]\r\nK=\xE9\r\n");
    EXPECT_EQ(old.Find("A", "K"), "\xC3\xA9");
    EXPECT_TRUE(old.Set("A", "L", "\xC3\xBC"));
    EXPECT_EQ(old.Bytes(), "[A]\r\nK=\xE9\r\nL=\xFC\r\n");

    Document marked("\xEF\xBB\xBF[A]\r\n");
    EXPECT_TRUE(marked.Set("A", "L", "\xC3\xBC"));
    EXPECT_EQ(marked.Bytes(), "\xEF\xBB\xBF[A]\r\nL=\xC3\xBC\r\n");
}

TEST(IniDocument, ReadsAndWritesUtf16) {
    const auto wide = [](std::string_view ascii) {
        std::string bytes;
        for (const char c : ascii)
            bytes.append(1, c).append(1, '\0');
        return bytes;
    };
    Document document("\xFF\xFE" + wide("[A]\r\nK=1\r\n"));
    EXPECT_EQ(document.Find("A", "K"), "1");
    EXPECT_TRUE(document.Set("A", "L", "2"));
    EXPECT_EQ(document.Bytes(), "\xFF\xFE" + wide("[A]\r\nK=1\r\nL=2\r\n"));
}

TEST(IniDocument, TurnsIntoUtf8ForWhatTheOldEncodingLacks) {
    Document document("[A]\r\nK=\xE9\r\n");
    EXPECT_TRUE(document.Set("A", "L", "\xCE\xA9"));
    EXPECT_EQ(document.Bytes(), "[A]\r\nK=\xC3\xA9\r\nL=\xCE\xA9\r\n");
}

TEST(IniDocument, DeletesASectionWithAllItsKeys) {
    Document document(kFile);
    EXPECT_TRUE(document.DeleteSection("cities"));
    EXPECT_EQ(document.Find("CITIES", "CITY1"), std::nullopt);
    std::string expected = kFile;
    const std::size_t begin = expected.find("[CITIES]");
    expected.erase(begin, expected.find("[directories]") - begin);
    EXPECT_EQ(document.Bytes(), expected);
    EXPECT_FALSE(document.DeleteSection("cities"));
    EXPECT_FALSE(document.DeleteSection(""));
}

TEST(IniDocument, DeletesEverySectionOfTheNameAndKeepsTheCommentOfTheNextOne) {
    Document document(kFile);
    EXPECT_TRUE(document.DeleteSection("DIRECTORIES"));
    EXPECT_EQ(document.Bytes(),
              "; the settings of one machine\r\nlost=above all sections\r\n\r\n; places\r\n[CITIES]\r\n"
              "CITY1=\"North Ashby, OH  44000\"\r\nCITY2='quoted'\r\nCITY3=\"open\r\n=nothing\r\n\r\n");
}

std::vector<std::string> Numbered(const Document& document, std::string_view prefix, std::size_t width) {
    std::vector<std::string> values;
    document.EachNumbered("S", prefix, width, [&](std::string_view value) {
        values.emplace_back(value);
        return !value.empty();
    });
    return values;
}

TEST(IniDocument, WalksNumberedKeysUpToAGap) {
    const Document document("[s]\nITEM01=a\nITEM02=b\nITEM04=d\n");
    EXPECT_EQ(Numbered(document, "Item", 2), (std::vector<std::string>{"a", "b", ""}));
    EXPECT_EQ(Numbered(document, "Item", 0), (std::vector<std::string>{""}));
}

TEST(IniDocument, WalksNumberedKeysInAnyOrderAndTakesTheFirstOfEach) {
    const Document document("[S]\nK2=b\nK1=a\nK2=other\nK3=c\n");
    EXPECT_EQ(Numbered(document, "K", 0), (std::vector<std::string>{"a", "b", "c", ""}));
}

TEST(IniDocument, NumbersThatOutgrowTheirWidthKeepAllDigits) {
    std::string bytes = "[S]\n";
    for (int i = 1; i <= 12; ++i)
        bytes += "K" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    EXPECT_EQ(Numbered(Document(bytes), "K", 1).size(), 13U);
}

}  // namespace
}  // namespace zenvora::ini
