#include "platform/ado/detail/statement.h"

namespace zenvora::ado::detail {
namespace {

Literal ParseLiteral(Lexer& lexer) {
    Literal literal;
    const bool negative = lexer.Accept('-');
    if (!negative && !lexer.Accept('+')) {
        const Token& token = lexer.Peek();
        if (token.kind == TokenKind::Text) {
            literal.kind = Literal::Kind::Text;
            literal.text = token.text;
            literal.quoteDoubled = token.quoteDoubled;
            lexer.Next();
            return literal;
        }
        if (token.kind == TokenKind::Date) {
            literal.kind = Literal::Kind::Date;
            literal.text = token.text;
            lexer.Next();
            return literal;
        }
        if (lexer.Accept("NULL")) return literal;
    }
    if (lexer.Peek().kind != TokenKind::Number)
        lexer.Refuse("a value (a quoted text, a number, Null or #m/d/yyyy#)");
    literal.kind = Literal::Kind::Number;
    literal.number = negative ? -lexer.Peek().number : lexer.Peek().number;
    lexer.Next();
    return literal;
}

void ParseValueList(Lexer& lexer, std::vector<Literal>& values) {
    values.clear();
    do {
        values.push_back(ParseLiteral(lexer));
    } while (lexer.Accept(','));
    lexer.Expect(')');
    lexer.ExpectEnd();
}

InsertStatement ParseInsert(Lexer& lexer) {
    InsertStatement insert;
    lexer.Expect("INTO");
    insert.table = lexer.ExpectName("a table name");
    if (lexer.Accept('(')) {
        do {
            insert.columns.push_back(lexer.ExpectName("a column name"));
        } while (lexer.Accept(','));
        lexer.Expect(')');
    }
    lexer.Expect("VALUES");
    // The place is noted before the token behind the bracket is looked at: that one belongs to the first
    // value.
    if (lexer.Peek().kind != TokenKind::Symbol || lexer.Peek().text != "(") lexer.Refuse("\"(\"");
    insert.valuesAt = lexer.EndOfToken();
    lexer.Next();
    ParseValueList(lexer, insert.values);
    return insert;
}

/// A date default may stand bare: 01/01/1900 is meant as a day and would as an expression be a division.
std::optional<Literal> BareDate(Lexer& lexer) {
    if (lexer.Peek().kind != TokenKind::Number) return std::nullopt;
    const std::string_view statement = lexer.Statement();
    std::size_t at = lexer.Peek().at;
    const std::size_t start = at;
    int parts = 0;
    for (;;) {
        const std::size_t digits = at;
        while (at < statement.size() && statement[at] >= '0' && statement[at] <= '9')
            ++at;
        if (at == digits) return std::nullopt;
        if (++parts == 3) break;
        if (at == statement.size() || statement[at] != '/') return std::nullopt;
        ++at;
    }
    Literal literal;
    literal.kind = Literal::Kind::Date;
    literal.text = statement.substr(start, at - start);
    lexer = Lexer(statement, at);
    return literal;
}

ChangeStatement ParseAlter(Lexer& lexer) {
    lexer.Expect("TABLE");
    const std::string_view table = lexer.ExpectName("a table name");
    if (lexer.Accept("ADD")) {
        AddColumnStatement add;
        add.table = table;
        lexer.Accept("COLUMN");
        add.column.name = lexer.ExpectName("a column name");
        ParseColumnType(lexer, add.column);
        lexer.ExpectEnd();
        return add;
    }
    lexer.Expect("ALTER");
    lexer.Accept("COLUMN");
    SetDefaultStatement set;
    set.table = table;
    set.column = lexer.ExpectName("a column name");
    lexer.Expect("SET");
    lexer.Expect("DEFAULT");
    const std::optional<Literal> date = BareDate(lexer);
    set.literal = date ? *date : ParseLiteral(lexer);
    lexer.ExpectEnd();
    return set;
}

}  // namespace

SelectStatement ParseSelect(std::string_view statement) {
    Lexer lexer{statement};
    SelectStatement select;
    lexer.Expect("SELECT");
    if (!lexer.Accept('*')) {
        do {
            select.columns.emplace_back(lexer.ExpectName("a column name"));
        } while (lexer.Accept(','));
    }
    lexer.Expect("FROM");
    select.table = lexer.ExpectName("a table name");
    if (lexer.Accept("WHERE")) {
        SelectStatement::Condition condition;
        condition.column = lexer.ExpectName("a column name");
        lexer.Expect('=');
        condition.literal = ParseLiteral(lexer);
        select.where = std::move(condition);
    }
    if (lexer.Accept("ORDER")) {
        lexer.Expect("BY");
        SelectStatement::Order order;
        order.column = lexer.ExpectName("a column name");
        order.descending = lexer.Accept("DESC");
        if (!order.descending) lexer.Accept("ASC");
        select.orderBy = std::move(order);
    }
    lexer.ExpectEnd();
    return select;
}

ChangeStatement ParseChange(std::string_view statement) {
    Lexer lexer{statement};
    if (lexer.Accept("INSERT")) return ParseInsert(lexer);
    if (lexer.Accept("ALTER")) return ParseAlter(lexer);
    lexer.Refuse("INSERT INTO or ALTER TABLE");
}

void ParseValues(std::string_view statement, std::size_t valuesAt, std::vector<Literal>& values) {
    Lexer lexer{statement, valuesAt};
    ParseValueList(lexer, values);
}

}  // namespace zenvora::ado::detail
