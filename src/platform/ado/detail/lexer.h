#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The characters of a statement cut into words, one at a time and without copying: a load makes tens of
/// thousands of statements, so that nothing here allocates.
namespace zenvora::ado::detail {

enum class TokenKind {
    End,
    Word,    ///< a bare name or keyword
    Name,    ///< a [name in brackets]; never a keyword
    Text,    ///< "text" or 'text'
    Number,  ///< digits, point, exponent; a sign is a symbol of its own
    Date,    ///< #m/d/yyyy#
    Symbol,  ///< one character
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string_view text;      ///< without its quotes, brackets or number signs
    std::size_t at = 0;         ///< where it begins in the statement, from 0
    double number = 0;          ///< Number
    bool quoteDoubled = false;  ///< Text: holds '' that stands for one '
};

/// Equal without regard to the case of ASCII letters: keywords.
[[nodiscard]] bool IsKeyword(std::string_view word, std::string_view keyword) noexcept;

/// The text of a Text token, with '' made '.
[[nodiscard]] std::string TextOf(const Token& token);

class Lexer {
  public:
    explicit Lexer(std::string_view statement, std::size_t at = 0) : statement_(statement), end_(at) {
        Next();
    }

    /// The token at hand.
    [[nodiscard]] const Token& Peek() const noexcept { return token_; }
    /// Goes on to the next token. Fault 3134: a text, name or date without its end, a number that is none.
    void Next();
    /// The token at hand, and goes on.
    Token Take();

    /// Goes on when the token at hand is this keyword or this symbol.
    bool Accept(std::string_view keyword);
    bool Accept(char symbol);
    /// Fault 3134 when it is not.
    void Expect(std::string_view keyword);
    void Expect(char symbol);
    /// A bare or bracketed name. Fault 3134.
    [[nodiscard]] std::string_view ExpectName(std::string_view what);
    /// One ";" and then nothing more. Fault 3134.
    void ExpectEnd();
    /// Fault 3134: what was expected, and what stands there instead.
    [[noreturn]] void Refuse(std::string_view expected) const;

    /// The statement behind the token at hand.
    [[nodiscard]] std::size_t EndOfToken() const noexcept { return end_; }
    [[nodiscard]] std::string_view Statement() const noexcept { return statement_; }

  private:
    void Quoted(char close, TokenKind kind);
    void Number();

    std::string_view statement_;
    std::size_t end_;
    Token token_;
};

/// Fault 3134 with a sentence.
[[noreturn]] void RefuseStatement(std::string sentence);

}  // namespace zenvora::ado::detail
