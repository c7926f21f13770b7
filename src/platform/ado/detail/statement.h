#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/ado/detail/lexer.h"
#include "platform/jet/table_definition.h"

/// The statement forms. Views point into the statement's text.
namespace zenvora::ado::detail {

struct Literal {
    enum class Kind { Null, Text, Number, Date };
    Kind kind = Kind::Null;
    double number = 0;
    std::string_view text;      ///< of a Text or Date, as it stands between its marks
    bool quoteDoubled = false;  ///< Text: '' stands for '
};

struct SelectStatement {
    std::vector<std::string> columns;  ///< empty: all
    std::string table;
    struct Condition {
        std::string column;
        Literal literal;  ///< its view lives as long as the statement's text
    };
    std::optional<Condition> where;
    struct Order {
        std::string column;
        bool descending = false;
    };
    std::optional<Order> orderBy;
};

struct InsertStatement {
    std::string_view table;
    std::vector<std::string_view> columns;  ///< empty: none named, all in their order
    std::vector<Literal> values;
    std::size_t valuesAt = 0;  ///< where the first literal may begin, behind "VALUES ("
};

struct AddColumnStatement {
    std::string_view table;
    jet::NewColumn column;
};

struct SetDefaultStatement {
    std::string_view table;
    std::string_view column;
    Literal literal;
};

using ChangeStatement = std::variant<InsertStatement, AddColumnStatement, SetDefaultStatement>;

/// SELECT * | column, ... FROM table [WHERE column = literal] [ORDER BY column [ASC | DESC]]. Fault 3134.
[[nodiscard]] SelectStatement ParseSelect(std::string_view statement);
/// INSERT, ALTER TABLE ADD, ALTER TABLE ALTER COLUMN SET DEFAULT. Fault 3134: everything else.
[[nodiscard]] ChangeStatement ParseChange(std::string_view statement);
/// The rest of an INSERT from behind "VALUES (" to its end. Fault 3134.
void ParseValues(std::string_view statement, std::size_t valuesAt, std::vector<Literal>& values);

/// A column type with its length: TEXT(50), CHAR(1), DOUBLE, DATE, ... Fault 3134: a type that there is not.
void ParseColumnType(Lexer& lexer, jet::NewColumn& column);

}  // namespace zenvora::ado::detail
