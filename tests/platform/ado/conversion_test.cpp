#include "platform/ado/detail/conversion.h"

#include "store_fixture.h"

namespace zenvora::ado::detail {
namespace {

using jet::ColumnType;
using jet::Value;

constexpr double kOct2009 = 40087;  // 10/1/2009

jet::ColumnDefinition Column(ColumnType type, int characters = 0) {
    jet::ColumnDefinition column;
    column.name = "C";
    column.type = type;
    column.byteLength = static_cast<std::uint16_t>(2 * characters);
    column.precision = 5;
    column.scale = 2;
    return column;
}

struct Case {
    const char* name;
    ColumnType type;
    const char* statement;  ///< the literal as it stands in a statement
    Value expected;
};

void PrintTo(const Case& shown, std::ostream* out) {
    *out << shown.name;
}

const shell::FixedClock& Clock() {
    static const shell::FixedClock clock{40359};  // 6/30/2010
    return clock;
}

Value Converted(std::string_view literal, const jet::ColumnDefinition& column) {
    const std::string statement = "INSERT INTO T (C) VALUES (" + std::string(literal) + ")";
    return ConvertLiteral(std::get<InsertStatement>(ParseChange(statement)).values.at(0), column, Clock());
}

class ConvertedLiteral : public testing::TestWithParam<Case> {};

TEST_P(ConvertedLiteral, GetsTheTypeOfItsColumn) {
    const Value value = Converted(GetParam().statement, Column(GetParam().type, 20));
    EXPECT_TRUE(value == GetParam().expected) << jet::ValueText(value);
}
INSTANTIATE_TEST_SUITE_P(
    Dates, ConvertedLiteral,
    testing::Values(Case{"DateText", ColumnType::DateTime, "\"10/1/2009\"", jet::DateTime{kOct2009}},
                    Case{"LeadingZeros", ColumnType::DateTime, "\"10/01/2009\"", jet::DateTime{kOct2009}},
                    Case{"YearFirst", ColumnType::DateTime, "\"2009-10-01\"", jet::DateTime{kOct2009}},
                    Case{"TwoDigitYear", ColumnType::DateTime, "\"10/1/09\"", jet::DateTime{kOct2009}},
                    Case{"DayFirst", ColumnType::DateTime, "\"31/12/1899\"", jet::DateTime{1}},
                    Case{"NoYear", ColumnType::DateTime, "\"6/30\"", jet::DateTime{40359}},
                    Case{"MonthName", ColumnType::DateTime, "\"Oct 1, 2009\"", jet::DateTime{kOct2009}},
                    Case{"DayZero", ColumnType::DateTime, "\"1/1/1900\"", jet::DateTime{2}},
                    Case{"DayZeroWithMidnight", ColumnType::DateTime, "\"1/1/1900 00:00:00\"",
                         jet::DateTime{2}},
                    Case{"WithNoon", ColumnType::DateTime, "\"1/1/1900 12:00:00\"", jet::DateTime{2.5}},
                    Case{"DateLiteral", ColumnType::DateTime, "#10/1/2009#", jet::DateTime{kOct2009}},
                    Case{"BareNumber", ColumnType::DateTime, "40087", jet::DateTime{kOct2009}},
                    Case{"NullDate", ColumnType::DateTime, "Null", jet::Null{}},
                    Case{"DateIntoText", ColumnType::Text, "#10/01/2009#", std::string("10/1/2009")},
                    Case{"DateIntoNumber", ColumnType::Double, "#10/1/2009#", kOct2009}),
    [](const auto& info) { return info.param.name; });
INSTANTIATE_TEST_SUITE_P(
    Numbers, ConvertedLiteral,
    testing::Values(Case{"Bare", ColumnType::Double, "250000", 250000.0},
                    Case{"Negative", ColumnType::Double, "-5", -5.0},
                    Case{"NumericText", ColumnType::Double, "\"$1,250,000.50\"", 1250000.5},
                    Case{"Parentheses", ColumnType::Double, "\"(5)\"", -5.0},
                    Case{"NullNumber", ColumnType::Double, "Null", jet::Null{}},
                    Case{"Long", ColumnType::Long, "2147483647", std::int32_t{2147483647}},
                    Case{"LongRoundsHalvesToEven", ColumnType::Long, "2.5", std::int32_t{2}},
                    Case{"LongFromText", ColumnType::Long, "\"3.5\"", std::int32_t{4}},
                    Case{"Integer", ColumnType::Integer, "-32768", std::int32_t{-32768}},
                    Case{"Byte", ColumnType::Byte, "255", std::int32_t{255}},
                    Case{"Single", ColumnType::Single, "0.5", 0.5F},
                    Case{"Currency", ColumnType::Currency, "12.3456", jet::Currency{123456}},
                    Case{"CurrencyFromText", ColumnType::Currency, "\"-$0.01\"", jet::Currency{-100}},
                    Case{"True", ColumnType::Boolean, "1", true},
                    Case{"False", ColumnType::Boolean, "0", false},
                    Case{"TrueText", ColumnType::Boolean, "\"true\"", true},
                    Case{"NoText", ColumnType::Boolean, "'No'", false},
                    Case{"NumberTextIntoBoolean", ColumnType::Boolean, "'-1'", true},
                    Case{"NullIntoBoolean", ColumnType::Boolean, "Null", false}),
    [](const auto& info) { return info.param.name; });
INSTANTIATE_TEST_SUITE_P(
    Texts, ConvertedLiteral,
    testing::Values(Case{"Plain", ColumnType::Text, "\"12 Oak St\"", std::string("12 Oak St")},
                    Case{"Empty", ColumnType::Text, "\"\"", std::string()},
                    Case{"BlanksStay", ColumnType::Text, "\" a \"", std::string(" a ")},
                    Case{"SingleQuoted", ColumnType::Text, "'O''Brien'", std::string("O'Brien")},
                    Case{"TwoSingleQuotesBetweenDoubleOnes", ColumnType::Text, "\"O''Brien\"",
                         std::string("O''Brien")},
                    Case{"Number", ColumnType::Text, "48083", std::string("48083")},
                    Case{"NumberLosesItsZeros", ColumnType::Text, "00501", std::string("501")},
                    Case{"Fraction", ColumnType::Text, "1.50", std::string("1.5")},
                    Case{"NullText", ColumnType::Text, "Null", jet::Null{}},
                    Case{"Memo", ColumnType::Memo, "\"long\"", std::string("long")}),
    [](const auto& info) { return info.param.name; });

struct RefusedValue {
    const char* name;
    ColumnType type;
    const char* statement;
    int fault;
};

class RefusedLiteral : public testing::TestWithParam<RefusedValue> {};

TEST_P(RefusedLiteral, NamesTheColumn) {
    const Fault fault =
        CaughtFault([] { static_cast<void>(Converted(GetParam().statement, Column(GetParam().type, 20))); });
    EXPECT_EQ(fault.number, GetParam().fault) << fault.description;
    EXPECT_EQ(fault.place.column, "C");
    EXPECT_NE(fault.description.find("column C"), std::string::npos) << fault.description;
}
INSTANTIATE_TEST_SUITE_P(
    Values, RefusedLiteral,
    testing::Values(
        RefusedValue{"NoDate", ColumnType::DateTime, "\"N/A\"", fault::kTypeMismatch},
        RefusedValue{"NoSuchDay", ColumnType::DateTime, "\"13/45/2001\"", fault::kTypeMismatch},
        RefusedValue{"YearWithLeadingZero", ColumnType::DateTime, "\"20/09/0315\"", fault::kTypeMismatch},
        RefusedValue{"EmptyDate", ColumnType::DateTime, "\"\"", fault::kTypeMismatch},
        RefusedValue{"NumberTextAsDate", ColumnType::DateTime, "\"40087\"", fault::kTypeMismatch},
        RefusedValue{"DateNumberTooLarge", ColumnType::DateTime, "2958466", fault::kOverflow},
        RefusedValue{"NoNumber", ColumnType::Double, "\"N/A\"", fault::kTypeMismatch},
        RefusedValue{"EmptyNumber", ColumnType::Double, "\"\"", fault::kTypeMismatch},
        RefusedValue{"DateTextAsNumber", ColumnType::Double, "\"1/1/2009\"", fault::kTypeMismatch},
        RefusedValue{"ByteAbove", ColumnType::Byte, "256", fault::kOverflow},
        RefusedValue{"ByteBelow", ColumnType::Byte, "-1", fault::kOverflow},
        RefusedValue{"IntegerAbove", ColumnType::Integer, "32768", fault::kOverflow},
        RefusedValue{"LongAbove", ColumnType::Long, "2147483648", fault::kOverflow},
        RefusedValue{"SingleAbove", ColumnType::Single, "1E39", fault::kOverflow},
        RefusedValue{"CurrencyAbove", ColumnType::Currency, "1E15", fault::kOverflow},
        RefusedValue{"DecimalAbove", ColumnType::Numeric, "1000", fault::kOverflow},
        RefusedValue{"NoBoolean", ColumnType::Boolean, "\"perhaps\"", fault::kTypeMismatch},
        RefusedValue{"TextAsBytes", ColumnType::Binary, "1", fault::kTypeMismatch},
        RefusedValue{"TooLong", ColumnType::Text, "\"123456789012345678901\"", fault::kTooLong}),
    [](const auto& info) { return info.param.name; });

TEST(ConvertedLiteral, QuotesTheValueInItsFault) {
    const Fault fault =
        CaughtFault([] { static_cast<void>(Converted("\"N/A\"", Column(ColumnType::DateTime))); });
    EXPECT_EQ(fault.description, "\"N/A\" is no date and does not go into the column C.");
}

TEST(ConvertedLiteral, RefusesADateBetweenMarksThatIsNone) {
    EXPECT_EQ(FaultOf([] { static_cast<void>(Converted("#13/45/2001#", Column(ColumnType::DateTime))); }),
              fault::kSyntax);
}

TEST(ConvertedLiteral, CountsCharactersNotBytes) {
    const Value value =
        Converted("\"\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\"", Column(ColumnType::Text, 5));
    EXPECT_EQ(std::get<std::string>(value).size(), 10U);
}

TEST(ConvertedLiteral, DropsThePaddingOfAFixedText) {
    jet::ColumnDefinition column = Column(ColumnType::Text, 4);
    column.fixedLength = true;
    EXPECT_TRUE(Converted("\"12  \"", column) == Value{std::string("12")});
    EXPECT_TRUE(Converted("\"12          \"", column) == Value{std::string("12")});
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Converted("\"12345\"", column)); }), fault::kTooLong);
}

TEST(ConvertedLiteral, MakesADecimalOfItsColumnsScale) {
    const auto decimal = std::get<jet::Numeric>(Converted("-12.345", Column(ColumnType::Numeric)));
    EXPECT_TRUE(decimal.negative);
    EXPECT_EQ(decimal.scale, 2);
    EXPECT_EQ(decimal.magnitude[15], 1235 % 256);  // half away from zero: 12.35
    EXPECT_EQ(decimal.magnitude[14], 1235 / 256);
    EXPECT_EQ(NumberOf(decimal), -12.35);
}

TEST(ConvertedLiteral, ReadsAnIdentifier) {
    const auto guid =
        std::get<jet::Guid>(Converted("'{00112233-4455-6677-8899-AABBCCDDEEFF}'", Column(ColumnType::Guid)));
    const std::array<std::uint8_t, 16> bytes{0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66,
                                             0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};
    EXPECT_EQ(guid.bytes, bytes);
    EXPECT_EQ(FaultOf([] { static_cast<void>(Converted("'0011'", Column(ColumnType::Guid))); }),
              fault::kTypeMismatch);
}

TEST(ConvertedValue, TakesWhatAnotherRecordHeld) {
    const auto convert = [](const Value& value, ColumnType type) {
        return ConvertValue(value, Column(type, 20), Clock());
    };
    EXPECT_TRUE(convert(jet::DateTime{2}, ColumnType::Text) == Value{std::string("1/1/1900")});
    EXPECT_TRUE(convert(true, ColumnType::Text) == Value{std::string("True")});
    EXPECT_TRUE(convert(true, ColumnType::Long) == Value{std::int32_t{-1}});
    EXPECT_TRUE(convert(std::int32_t{7}, ColumnType::Double) == Value{7.0});
    EXPECT_TRUE(convert(std::string("7"), ColumnType::Double) == Value{7.0});
    EXPECT_TRUE(convert(jet::Currency{900719925474099313}, ColumnType::Currency) ==
                Value{jet::Currency{900719925474099313}});
    EXPECT_TRUE(convert(jet::Currency{15000}, ColumnType::Double) == Value{1.5});
    EXPECT_TRUE(convert(jet::Null{}, ColumnType::Double) == Value{jet::Null{}});
    EXPECT_TRUE(convert(jet::Bytes{std::byte{1}}, ColumnType::Ole) == (Value{jet::Bytes{std::byte{1}}}));
    EXPECT_EQ(FaultOf([&] { static_cast<void>(convert(jet::Bytes{}, ColumnType::Double)); }),
              fault::kTypeMismatch);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(convert(jet::Guid{}, ColumnType::Double)); }),
              fault::kTypeMismatch);
}

TEST(DefaultExpressionText, IsALiteralOfTheFile) {
    EXPECT_EQ(DefaultExpression(0.0), "0");
    EXPECT_EQ(DefaultExpression(std::string("3")), "\"3\"");
    EXPECT_EQ(DefaultExpression(std::string("a\"b")), "\"a\"\"b\"");
    EXPECT_EQ(DefaultExpression(jet::DateTime{2}), "#1/1/1900#");
    EXPECT_EQ(DefaultExpression(true), "True");
    EXPECT_EQ(DefaultExpression(jet::Null{}), "Null");
}

}  // namespace
}  // namespace zenvora::ado::detail
