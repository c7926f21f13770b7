#include "import/xml_source.h"

#include <gtest/gtest.h>

#include "grid_text.h"

namespace zenvora::importing {
namespace {

using testing_support::CellsOf;
using testing_support::FaultOf;
using Cells = std::vector<testing_support::Row>;
using Tags = std::vector<std::string>;

struct Source {
    SourceGrid grid;
    std::vector<std::uint32_t> lines;
};

Source Parsed(std::string_view text) {
    Source source;
    ParseXmlText(text, "L.XML", ScanXmlTags(text, "L.XML"), source.grid, source.lines);
    return source;
}

constexpr std::string_view kTwoRecords =
    "<?xml version=\"1.0\"?>\n"
    "<Listings>\n"
    "  <Listing>\n"
    "    <Address>12 Oak St</Address>\n"
    "    <SaleDate>3/1/2009</SaleDate>\n"
    "  </Listing>\n"
    "  <Listing>\n"
    "    <Address>9 Elm &amp; Ash</Address>\n"
    "    <SaleDate></SaleDate>\n"
    "  </Listing>\n"
    "</Listings>\n";

TEST(ScanXmlTags, TakesElementsThatOpenAndCloseOnOneLine) {
    EXPECT_EQ(ScanXmlTags(kTwoRecords, "L.XML"), (Tags{"Address", "SaleDate"}));
}

TEST(ScanXmlTags, KeepsTheOrderOfFirstAppearance) {
    EXPECT_EQ(ScanXmlTags("<b>1</b>\n<a>2</a>\n<b>3</b>\n<c>4</c>", "L.XML"), (Tags{"b", "a", "c"}));
}

TEST(ScanXmlTags, CountsAnAttributeAsPartOfTheName) {
    EXPECT_EQ(ScanXmlTags("<Price currency=\"USD\">5</Price>", "L.XML"),
              (Tags{"Price currency=\"USD\"", "Price"}));
}

TEST(ScanXmlTags, TakesEveryTagOfALineThatQualifies) {
    EXPECT_EQ(ScanXmlTags("<r><a>1</a></r>", "L.XML"), (Tags{"r", "a"}));
    EXPECT_EQ(ScanXmlTags("<r/><a>1</a>", "L.XML"), (Tags{"r/", "a"}));
}

TEST(ScanXmlTags, NeedsAClosingTagBehindTheFirstOpeningOne) {
    EXPECT_EQ(FaultOf([] { static_cast<void>(ScanXmlTags("</a>\n<b>\ntext", "L.XML")); }).number,
              fault::kSourceFormat);
}

TEST(ScanXmlTags, FaultsWithoutAnyUsableTag) {
    const Fault fault = FaultOf([] { static_cast<void>(ScanXmlTags("<a>\n<b>\n</b>\n</a>\n", "L.XML")); });
    EXPECT_EQ(fault.number, fault::kSourceFormat);
    EXPECT_EQ(fault.place.file, "L.XML");
    EXPECT_EQ(fault.place.line, 1);
    EXPECT_EQ(FaultOf([] { static_cast<void>(ScanXmlTags("", "L.XML")); }).number, fault::kSourceFormat);
}

TEST(ScanXmlTags, FaultsAtATagThatDoesNotEndOnItsLine) {
    const Fault fault = FaultOf([] { static_cast<void>(ScanXmlTags("<a>1</a>\n<b\nx=\"1\">", "L.XML")); });
    EXPECT_EQ(fault.number, fault::kSourceFormat);
    EXPECT_EQ(fault.place.line, 2);
}

TEST(ScanXmlTags, FaultsAtALineBeyond32767Characters) {
    const std::string value(32767 - 7, 'x');
    EXPECT_EQ(ScanXmlTags("<a>" + value + "</a>", "L.XML"), (Tags{"a"}));
    const Fault fault = FaultOf([&] { static_cast<void>(ScanXmlTags("\n<a>x" + value + "</a>", "L.XML")); });
    EXPECT_EQ(fault.number, fault::kOverflow);
    EXPECT_EQ(fault.place.line, 2);
}

TEST(XmlSource, ReadsRecordsAndEndsInABlankRow) {
    const Source source = Parsed(kTwoRecords);
    EXPECT_EQ(CellsOf(source.grid),
              (Cells{{"Address", "SaleDate"}, {"12 Oak St", "3/1/2009"}, {"9 Elm &amp; Ash", ""}, {"", ""}}));
    EXPECT_EQ(source.lines, (std::vector<std::uint32_t>{0, 4, 8, 0}));
}

TEST(XmlSource, ReadsALastRecordWithoutLineBreak) {
    EXPECT_EQ(CellsOf(Parsed("<a>1</a>\n<b>2</b>").grid), (Cells{{"a", "b"}, {"1", "2"}, {"", ""}}));
}

TEST(XmlSource, AWholeDocumentOnOneLineGivesNoRecord) {
    EXPECT_EQ(CellsOf(Parsed("<r><a>1</a></r>").grid), (Cells{{"r", "a"}, {"", ""}}));
}

TEST(XmlSource, FaultsAtALineWithoutTheExpectedField) {
    const Fault fault = FaultOf([] { Parsed("<a>1</a>\n<b>2</b>\n<a>3</a>\n<c>4</c>\n"); });
    EXPECT_EQ(fault.number, fault::kInvalidCall);
    EXPECT_EQ(fault.place.file, "L.XML");
    EXPECT_EQ(fault.place.line, 3);  // three fields a record: the first one lacks <c>
    EXPECT_NE(fault.description.find("<c>...</c>"), std::string::npos);
}

TEST(XmlSource, FaultsAtAnElementWithAnAttribute) {
    const Fault fault = FaultOf([] { Parsed("<r>\n<a>1</a>\n<p c=\"1\">2</p>\n</r>\n"); });
    EXPECT_EQ(fault.number, fault::kInvalidCall);
    EXPECT_EQ(fault.place.line, 3);
}

TEST(XmlSource, FaultsAtAClosingTagWithoutItsOpeningOne) {
    // In the middle of a record, where the text in front of the closing tag would have been taken for the
    // value.
    EXPECT_EQ(FaultOf([] { Parsed("<a>1</a>\n<b>2</b>\n<a>1</a>\n12345</b>\n"); }).place.line, 4);
    // As its first field.
    const Fault fault = FaultOf([] { Parsed("<r>\n</a>1</a>\n"); });
    EXPECT_EQ(fault.number, fault::kInvalidCall);
    EXPECT_EQ(fault.place.line, 2);
}

TEST(XmlSource, FaultsAtTagsInTheWrongOrder) {
    EXPECT_EQ(FaultOf([] { Parsed("<a>1</a>\n<b>2</b>\n<a>3</a>\n</b>4<b>\n"); }).place.line, 4);
}

TEST(XmlSource, FaultsWhereTheFileEndsInsideARecord) {
    const Fault fault = FaultOf([] { Parsed("<a>1</a>\n<b>2</b>\n<a>3</a>\n"); });
    EXPECT_EQ(fault.number, fault::kInvalidCall);
    EXPECT_NE(fault.description.find("ends inside a record"), std::string::npos) << fault.description;
    EXPECT_EQ(fault.place.line, 4);
}

TEST(XmlSource, Takes32766Records) {
    std::string text;
    for (int record = 0; record < 32766; ++record)
        text += "<a>1</a>\n";
    EXPECT_EQ(Parsed(text).grid.Rows(), 32768);
    const Fault fault = FaultOf([&] { Parsed(text + "<a>1</a>\n"); });
    EXPECT_EQ(fault.number, fault::kOverflow);
}

}  // namespace
}  // namespace zenvora::importing
