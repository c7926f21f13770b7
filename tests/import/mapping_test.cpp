#include "import/mapping.h"

#include <gtest/gtest.h>

#include "grid_text.h"
#include "text_disk.h"

namespace zenvora::importing {
namespace {

using testing_support::FaultOf;
using testing_support::TextDisk;
using Lines = std::vector<std::string>;

struct SplitCase {
    const char* name;
    const char* text;
    const char* source;
    const char* destination;
};
class MappingTexts : public testing::TestWithParam<SplitCase> {};

TEST_P(MappingTexts, AreCutAtTheFirstArrow) {
    const auto mapping = SplitMapping(GetParam().text);
    ASSERT_TRUE(mapping.has_value());
    EXPECT_EQ(mapping->source, GetParam().source);
    EXPECT_EQ(mapping->destination, GetParam().destination);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MappingTexts,
    testing::Values(SplitCase{"Usual", "Sale Dt <-> Sale Date", "Sale Dt", "Sale Date"},
                    SplitCase{"TwoBlanksInTheName", "Field  2 <-> Zip", "Field  2", "Zip"},
                    SplitCase{"EmptySource", " <-> Zip", "", "Zip"},
                    SplitCase{"EmptyDestination", "a <-> ", "a", ""},
                    SplitCase{"NothingBehindTheArrow", "a <->", "a", ""},
                    SplitCase{"FirstOfTwoArrows", "a <-> b <-> c", "a", "b <-> c"},
                    SplitCase{"WithoutBlanksCharactersAreLost", "ab<->Zip", "a", "ip"},
                    SplitCase{"LongCharactersAreLostWhole", "a\xC3\xA9<->\xC3\xA9Zip", "a", "Zip"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SplitMapping, GivesNothingForATextThatIsNoMapping) {
    EXPECT_FALSE(SplitMapping("Sale Dt Sale Date"));
    EXPECT_FALSE(SplitMapping(""));
    EXPECT_FALSE(SplitMapping("<-> Zip"));
}

TEST(MappingText, JoinsWithFiveCharacters) {
    EXPECT_EQ(MappingText("Sale Dt", "Sale Date"), "Sale Dt <-> Sale Date");
}

Lines Read(const std::string& bytes) {
    TextDisk disk;
    disk.Set("L.map", bytes);
    return ReadMapFile(disk, "L.map");
}

TEST(MapFile, ReadsLinesWithAnyLineEnd) {
    const Lines both = {"a <-> City", "b <-> Zip"};
    EXPECT_EQ(Read("a <-> City\r\nb <-> Zip\r\n"), both);
    EXPECT_EQ(Read("a <-> City\nb <-> Zip\n"), both);
    EXPECT_EQ(Read("a <-> City\rb <-> Zip\r"), both);
    EXPECT_EQ(Read("a <-> City\r\nb <-> Zip"), both);
}

TEST(MapFile, KeepsAnEmptyLineAsARow) {
    EXPECT_EQ(Read("a <-> City\r\n\r\nb <-> Zip\r\n"), (Lines{"a <-> City", "", "b <-> Zip"}));
    EXPECT_EQ(Read("\n"), (Lines{""}));
}

TEST(MapFile, OfNoBytesHasNoRows) {
    EXPECT_EQ(Read(""), Lines{});
}

TEST(MapFile, DropsOneQuoteAtEitherEnd) {
    EXPECT_EQ(Read("\"City <-> City\"\r\n"), (Lines{"City <-> City"}));
    EXPECT_EQ(Read("\"City <-> City\r\n"), (Lines{"City <-> City"}));
    EXPECT_EQ(Read("City <-> City\"\r\n"), (Lines{"City <-> City"}));
    EXPECT_EQ(Read("\"\"City <-> City\"\"\r\n"), (Lines{"\"City <-> City\""}));
    EXPECT_EQ(Read("\"\r\n"), (Lines{""}));
}

TEST(MapFile, IsReadInItsEncoding) {
    EXPECT_EQ(Read("Stra\xDF"
                   "e <-> Address\r\n"),
              (Lines{"Stra\xC3\x9F"
                     "e <-> Address"}));
    EXPECT_EQ(Read("\xEF\xBB\xBFStra\xC3\x9F"
                   "e <-> Address\r\n"),
              (Lines{"Stra\xC3\x9F"
                     "e <-> Address"}));
}

TEST(MapFile, ThatIsNotThereIsAFault) {
    TextDisk disk;
    EXPECT_EQ(FaultOf([&] { static_cast<void>(ReadMapFile(disk, "no.map")); }).number, fault::kFileNotFound);
}

TEST(MapFile, NewIsUtf8WithCrLf) {
    TextDisk disk;
    WriteMapFile(disk, "L.map",
                 {"Stra\xC3\x9F"
                  "e <-> Address",
                  "b <-> Zip"});
    EXPECT_EQ(disk.Get("L.map"),
              "Stra\xC3\x9F"
              "e <-> Address\r\nb <-> Zip\r\n");
    EXPECT_FALSE(disk.Exists("L.map.bak"));
}

TEST(MapFile, KeepsTheEncodingItCameIn) {
    TextDisk disk;
    disk.Set("L.map",
             "Stra\xDF"
             "e <-> Address\r\n");
    WriteMapFile(disk, "L.map",
                 {"Stra\xC3\x9F"
                  "e <-> Address",
                  "b <-> Zip"});
    EXPECT_EQ(disk.Get("L.map"),
              "Stra\xDF"
              "e <-> Address\r\nb <-> Zip\r\n");
    disk.Set("U.map",
             "\xEF\xBB\xBFStra\xC3\x9F"
             "e <-> Address\r\n");
    WriteMapFile(disk, "U.map", {"\xC3\x9F <-> Zip"});
    EXPECT_EQ(disk.Get("U.map"), "\xEF\xBB\xBF\xC3\x9F <-> Zip\r\n");
}

TEST(MapFile, ReadsBackTheSameEvenWhereItsEncodingCannotHoldIt) {
    for (const std::string name :
         {"\xE4\xB8\xAD", "\xC3\x83\xC2\xA9"}) {  // no such letter; two that would read as UTF-8
        TextDisk disk;
        disk.Set("L.map",
                 "Stra\xDF"
                 "e <-> Address\r\n");
        const Lines lines = {name + " <-> Zip"};
        WriteMapFile(disk, "L.map", lines);
        EXPECT_EQ(ReadMapFile(disk, "L.map"), lines);
    }
}

TEST(MapFile, KeepsTheReplacedFileBesideIt) {
    TextDisk disk;
    disk.Set("L.map", "old <-> Zip\r\n");
    WriteMapFile(disk, "L.map", {"new <-> Zip"});
    EXPECT_EQ(disk.Get("L.map"), "new <-> Zip\r\n");
    EXPECT_EQ(disk.Get("L.map.bak"), "old <-> Zip\r\n");
}

TEST(MapFile, ThatCannotBeWrittenLeavesTheOldOne) {
    class FullDisk final : public TextDisk {
      public:
        std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path,
                                              files::OpenMode mode) override {
            if (mode == files::OpenMode::CreateNew) throw Fault{fault::kDiskFull, "The disk is full."};
            return TextDisk::Open(path, mode);
        }
    };
    FullDisk disk;
    disk.Set("L.map", "old <-> Zip\r\n");
    EXPECT_EQ(FaultOf([&] { WriteMapFile(disk, "L.map", {"new <-> Zip"}); }).number, fault::kDiskFull);
    EXPECT_EQ(disk.Get("L.map"), "old <-> Zip\r\n");
}

}  // namespace
}  // namespace zenvora::importing
