#include "platform/ado/detail/statement.h"
#include "store_fixture.h"

namespace zenvora::ado::detail {
namespace {

using jet::ColumnType;

struct TypeText {
    const char* text;
    ColumnType type;
    int characters = 0;
    bool fixedLength = false;
    bool autoNumber = false;
};

class ColumnTypeText : public testing::TestWithParam<TypeText> {};

TEST_P(ColumnTypeText, MakesItsColumn) {
    const ChangeStatement change = ParseChange("ALTER TABLE T ADD C " + std::string(GetParam().text));
    const jet::NewColumn& column = std::get<AddColumnStatement>(change).column;
    EXPECT_EQ(column.type, GetParam().type);
    EXPECT_EQ(column.characters, GetParam().characters);
    EXPECT_EQ(column.fixedLength, GetParam().fixedLength);
    EXPECT_EQ(column.autoNumber, GetParam().autoNumber);
}
INSTANTIATE_TEST_SUITE_P(
    Types, ColumnTypeText,
    testing::Values(
        TypeText{"CHAR(4)", ColumnType::Text, 4, true}, TypeText{"character (1)", ColumnType::Text, 1, true},
        TypeText{"TEXT(50)", ColumnType::Text, 50}, TypeText{"VARCHAR(255)", ColumnType::Text, 255},
        TypeText{"STRING(7)", ColumnType::Text, 7}, TypeText{"TEXT", ColumnType::Text, 255},
        TypeText{"MEMO", ColumnType::Memo}, TypeText{"LONGTEXT", ColumnType::Memo},
        TypeText{"NOTE", ColumnType::Memo}, TypeText{"BIT", ColumnType::Boolean},
        TypeText{"YESNO", ColumnType::Boolean}, TypeText{"LOGICAL", ColumnType::Boolean},
        TypeText{"BOOLEAN", ColumnType::Boolean}, TypeText{"BYTE", ColumnType::Byte},
        TypeText{"TINYINT", ColumnType::Byte}, TypeText{"SHORT", ColumnType::Integer},
        TypeText{"SMALLINT", ColumnType::Integer}, TypeText{"LONG", ColumnType::Long},
        TypeText{"INT", ColumnType::Long}, TypeText{"INTEGER", ColumnType::Long},
        TypeText{"COUNTER", ColumnType::Long, 0, false, true},
        TypeText{"AUTOINCREMENT", ColumnType::Long, 0, false, true},
        TypeText{"IDENTITY", ColumnType::Long, 0, false, true}, TypeText{"MONEY", ColumnType::Currency},
        TypeText{"CURRENCY", ColumnType::Currency}, TypeText{"REAL", ColumnType::Single},
        TypeText{"SINGLE", ColumnType::Single}, TypeText{"double", ColumnType::Double},
        TypeText{"FLOAT", ColumnType::Double}, TypeText{"NUMBER", ColumnType::Double},
        TypeText{"DATE", ColumnType::DateTime}, TypeText{"TIME", ColumnType::DateTime},
        TypeText{"DATETIME", ColumnType::DateTime}, TypeText{"DECIMAL(10,2)", ColumnType::Numeric},
        TypeText{"NUMERIC", ColumnType::Numeric}, TypeText{"BINARY(16)", ColumnType::Binary, 16},
        TypeText{"VARBINARY(510)", ColumnType::Binary, 510}, TypeText{"LONGBINARY", ColumnType::Ole},
        TypeText{"IMAGE", ColumnType::Ole}, TypeText{"OLEOBJECT", ColumnType::Ole},
        TypeText{"GUID", ColumnType::Guid}, TypeText{"UNIQUEIDENTIFIER", ColumnType::Guid}));

TEST(ColumnTypeText, KeepsDigitsOfADecimal) {
    const ChangeStatement change = ParseChange("ALTER TABLE T ADD C DECIMAL(10,2)");
    const jet::NewColumn& column = std::get<AddColumnStatement>(change).column;
    EXPECT_EQ(column.precision, 10);
    EXPECT_EQ(column.scale, 2);
}

class RefusedType : public testing::TestWithParam<const char*> {};

TEST_P(RefusedType, IsASyntaxFault) {
    const std::string statement = "ALTER TABLE T ADD C " + std::string(GetParam());
    EXPECT_EQ(FaultOf([&] { static_cast<void>(ParseChange(statement)); }), fault::kSyntax) << statement;
}
INSTANTIATE_TEST_SUITE_P(Types, RefusedType,
                         testing::Values("TEXT(0)", "TEXT(256)", "TEXT(1.5)", "TEXT()", "TEXT(", "CHAR(-1)",
                                         "DOUBLE(5)", "MEMO(5)", "DECIMAL(29)", "DECIMAL(5,6)", "BINARY",
                                         "BINARY(511)", "[TEXT](5)", "CHARS(5)"));

}  // namespace
}  // namespace zenvora::ado::detail
