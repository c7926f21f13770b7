#include "platform/ado/detail/criterion.h"

#include "platform/ado/detail/lexer.h"
#include "platform/text/utf8.h"

namespace zenvora::ado::detail {

Criterion ParseCriterion(std::string_view criterion) {
    Lexer lexer{criterion};
    Criterion parsed;
    parsed.field = lexer.ExpectName("a field name");
    lexer.Expect('=');
    if (lexer.Peek().kind != TokenKind::Text || criterion[lexer.Peek().at] != '\'') {
        lexer.Refuse("a text between single quotes");
    }
    parsed.text = text::ReplaceAll(TextOf(lexer.Take()), "**", "*");
    if (lexer.Peek().kind != TokenKind::End) lexer.Refuse("the end of the criterion");
    return parsed;
}

}  // namespace zenvora::ado::detail
