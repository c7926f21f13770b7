#include "databook/address_line.h"

#include <gtest/gtest.h>

namespace zenvora::databook {
namespace {

struct Line {
    const char* name;
    const char* text;
    const char* city;
    const char* state;
    const char* zip;
};

class AddressLine : public testing::TestWithParam<Line> {};

TEST_P(AddressLine, GivesItsParts) {
    std::string city = "left";
    std::string state = "from";
    std::string zip = "before";
    GetFULLCityStateZIP(GetParam().text, city, state, zip);
    EXPECT_EQ(city, GetParam().city);
    EXPECT_EQ(state, GetParam().state);
    EXPECT_EQ(zip, GetParam().zip);
}

INSTANTIATE_TEST_SUITE_P(
    Of, AddressLine,
    testing::Values(Line{"CityStateZip", "DALLAS, TX 75201", "DALLAS", "TX", "75201"},
                    Line{"NoComma", "DALLAS TX 75201", "", "", ""}, Line{"Nothing", "", "", "", ""},
                    Line{"CityAlone", " DALLAS ,", "DALLAS", "", ""},
                    Line{"SecondComma", "Troy, MI, 48083-1234", "Troy", "MI", "48083"},
                    Line{"SecondCommaBeforeBlank", "Troy, N. Y, 48083", "Troy", "", "48083"},
                    Line{"StateWithPeriods", "Troy, M.I. 48083", "Troy", "MI", "48083"},
                    Line{"StateAlone", "Troy, M.I.", "Troy", "MI", ""},
                    Line{"StateInLowerCase", "Troy, mi 48083", "Troy", "mi", "48083"},
                    Line{"NoState", "DALLAS, 75201-1234", "DALLAS", "", "75201"},
                    Line{"FiveDigits", "DALLAS, 75201", "DALLAS", "", "75201"},
                    Line{"FiveLetters", "DALLAS, TEXAS", "DALLAS", "", ""},
                    Line{"OtherLength", "DALLAS, TEX", "DALLAS", "", ""},
                    Line{"LongWithoutHyphen", "DALLAS, 752011234", "DALLAS", "", ""},
                    Line{"UnknownState", "Paris, XX 75201", "Paris", "", "75201"},
                    Line{"StateThatTheListLacks", "Bangor, ME 04401", "Bangor", "", "04401"},
                    Line{"SeveralBlanks", "Troy,   MI   48083", "Troy", "MI", "48083"},
                    Line{"ShortZip", "Troy, MI 4808", "Troy", "MI", ""}),
    [](const auto& test) { return test.param.name; });

TEST(ProperZip, IsTheLeadingNumberInFiveDigits) {
    EXPECT_EQ(ReturnProperZip("75201"), "75201");
    EXPECT_EQ(ReturnProperZip("75201-1234"), "75201");
    EXPECT_EQ(ReturnProperZip("02124"), "02124");
    EXPECT_EQ(ReturnProperZip("2124-"), "02124");
    EXPECT_EQ(ReturnProperZip("12AB5"), "00012");
}

TEST(ProperZip, IsEmptyForAShortTextAndForNoNumber) {
    EXPECT_EQ(ReturnProperZip("2124"), "");
    EXPECT_EQ(ReturnProperZip(""), "");
    EXPECT_EQ(ReturnProperZip("TEXAS"), "");
    EXPECT_EQ(ReturnProperZip("00000"), "");
}

}  // namespace
}  // namespace zenvora::databook
