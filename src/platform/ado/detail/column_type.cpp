#include <algorithm>
#include <array>
#include <cmath>

#include "platform/ado/detail/statement.h"

namespace zenvora::ado::detail {
namespace {

enum class Arguments { None, Length, OptionalLength, Decimal };

struct TypeName {
    std::string_view name;
    jet::ColumnType type;
    Arguments arguments = Arguments::None;
};

constexpr int kLongestText = 255;
constexpr int kLongestBinary = 510;
constexpr int kMostDigits = 28;

constexpr std::array kTypeNames{
    TypeName{"CHAR", jet::ColumnType::Text, Arguments::OptionalLength},
    TypeName{"CHARACTER", jet::ColumnType::Text, Arguments::OptionalLength},
    TypeName{"TEXT", jet::ColumnType::Text, Arguments::OptionalLength},
    TypeName{"VARCHAR", jet::ColumnType::Text, Arguments::OptionalLength},
    TypeName{"STRING", jet::ColumnType::Text, Arguments::OptionalLength},
    TypeName{"MEMO", jet::ColumnType::Memo},
    TypeName{"LONGTEXT", jet::ColumnType::Memo},
    TypeName{"NOTE", jet::ColumnType::Memo},
    TypeName{"BIT", jet::ColumnType::Boolean},
    TypeName{"YESNO", jet::ColumnType::Boolean},
    TypeName{"LOGICAL", jet::ColumnType::Boolean},
    TypeName{"BOOLEAN", jet::ColumnType::Boolean},
    TypeName{"BYTE", jet::ColumnType::Byte},
    TypeName{"TINYINT", jet::ColumnType::Byte},
    TypeName{"SHORT", jet::ColumnType::Integer},
    TypeName{"SMALLINT", jet::ColumnType::Integer},
    TypeName{"LONG", jet::ColumnType::Long},
    TypeName{"INT", jet::ColumnType::Long},
    TypeName{"INTEGER", jet::ColumnType::Long},
    TypeName{"COUNTER", jet::ColumnType::Long},
    TypeName{"AUTOINCREMENT", jet::ColumnType::Long},
    TypeName{"IDENTITY", jet::ColumnType::Long},
    TypeName{"MONEY", jet::ColumnType::Currency},
    TypeName{"CURRENCY", jet::ColumnType::Currency},
    TypeName{"REAL", jet::ColumnType::Single},
    TypeName{"SINGLE", jet::ColumnType::Single},
    TypeName{"DOUBLE", jet::ColumnType::Double},
    TypeName{"FLOAT", jet::ColumnType::Double},
    TypeName{"NUMBER", jet::ColumnType::Double},
    TypeName{"DATE", jet::ColumnType::DateTime},
    TypeName{"TIME", jet::ColumnType::DateTime},
    TypeName{"DATETIME", jet::ColumnType::DateTime},
    TypeName{"DECIMAL", jet::ColumnType::Numeric, Arguments::Decimal},
    TypeName{"NUMERIC", jet::ColumnType::Numeric, Arguments::Decimal},
    TypeName{"BINARY", jet::ColumnType::Binary, Arguments::Length},
    TypeName{"VARBINARY", jet::ColumnType::Binary, Arguments::Length},
    TypeName{"LONGBINARY", jet::ColumnType::Ole},
    TypeName{"IMAGE", jet::ColumnType::Ole},
    TypeName{"OLEOBJECT", jet::ColumnType::Ole},
    TypeName{"GUID", jet::ColumnType::Guid},
    TypeName{"UNIQUEIDENTIFIER", jet::ColumnType::Guid},
};

int ParseWhole(Lexer& lexer, int least, int most) {
    const Token& token = lexer.Peek();
    const bool fits = token.kind == TokenKind::Number && token.number == std::floor(token.number) &&
                      token.number >= least && token.number <= most;
    if (!fits) lexer.Refuse("a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    return static_cast<int>(lexer.Take().number);
}

void ParseDecimal(Lexer& lexer, jet::NewColumn& column) {
    if (!lexer.Accept('(')) return;
    column.precision = static_cast<std::uint8_t>(ParseWhole(lexer, 1, kMostDigits));
    if (lexer.Accept(',')) column.scale = static_cast<std::uint8_t>(ParseWhole(lexer, 0, column.precision));
    lexer.Expect(')');
}

}  // namespace

void ParseColumnType(Lexer& lexer, jet::NewColumn& column) {
    const std::string_view name =
        lexer.Peek().kind == TokenKind::Word ? lexer.Peek().text : std::string_view{};
    const auto* const type =
        std::find_if(kTypeNames.begin(), kTypeNames.end(),
                     [name](const TypeName& known) { return IsKeyword(name, known.name); });
    if (type == kTypeNames.end()) lexer.Refuse("a column type");
    lexer.Next();
    column.type = type->type;
    column.fixedLength = type->name.starts_with("CHAR");
    column.autoNumber = type->name == "COUNTER" || type->name == "AUTOINCREMENT" || type->name == "IDENTITY";
    const int longest = column.type == jet::ColumnType::Binary ? kLongestBinary : kLongestText;
    switch (type->arguments) {
        case Arguments::None:
            break;
        case Arguments::Decimal:
            ParseDecimal(lexer, column);
            break;
        case Arguments::OptionalLength:
        case Arguments::Length:
            if (type->arguments == Arguments::OptionalLength) column.characters = kLongestText;
            if (type->arguments == Arguments::Length || lexer.Peek().text == "(") {
                lexer.Expect('(');
                column.characters = ParseWhole(lexer, 1, longest);
                lexer.Expect(')');
            }
            break;
    }
}

}  // namespace zenvora::ado::detail
