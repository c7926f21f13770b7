#include "platform/ado/detail/lexer.h"

#include <charconv>
#include <system_error>

#include "platform/fault.h"
#include "platform/text/utf8.h"

namespace zenvora::ado::detail {
namespace {

constexpr bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr bool IsLetter(char c) noexcept {
    // Bytes above ASCII belong to letters of other scripts; the table knows which names exist.
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}
constexpr bool IsWordCharacter(char c) noexcept {
    return IsLetter(c) || IsDigit(c) || c == '_';
}
constexpr bool IsSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr char UpperAscii(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

}  // namespace

bool IsKeyword(std::string_view word, std::string_view keyword) noexcept {
    if (word.size() != keyword.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (UpperAscii(word[i]) != UpperAscii(keyword[i])) return false;
    }
    return true;
}

std::string TextOf(const Token& token) {
    return token.quoteDoubled ? text::ReplaceAll(token.text, "''", "'") : std::string(token.text);
}

void RefuseStatement(std::string sentence) {
    throw Fault{fault::kSyntax, std::move(sentence)};
}

void Lexer::Next() {
    while (end_ < statement_.size() && IsSpace(statement_[end_]))
        ++end_;
    token_ = Token{};
    token_.at = end_;
    if (end_ == statement_.size()) return;
    const char first = statement_[end_];
    if (IsLetter(first) || first == '_') {
        while (end_ < statement_.size() && IsWordCharacter(statement_[end_]))
            ++end_;
        token_.kind = TokenKind::Word;
        token_.text = statement_.substr(token_.at, end_ - token_.at);
    } else if (first == '"' || first == '\'') {
        Quoted(first, TokenKind::Text);
    } else if (first == '[') {
        Quoted(']', TokenKind::Name);
    } else if (first == '#') {
        Quoted('#', TokenKind::Date);
    } else if (IsDigit(first) || first == '.') {
        Number();
    } else {
        token_.kind = TokenKind::Symbol;
        token_.text = statement_.substr(end_++, 1);
    }
}

void Lexer::Quoted(char close, TokenKind kind) {
    const std::size_t start = end_ + 1;
    std::size_t at = start;
    for (;;) {
        at = statement_.find(close, at);
        if (at == std::string_view::npos) {
            RefuseStatement("The statement ends inside of what begins with " +
                            std::string(statement_.substr(token_.at, 1)) + " at character " +
                            std::to_string(token_.at + 1) + ".");
        }
        // Only '' stands for a quote. Values come between double quotes as they are, so that a double quote
        // in a value has to refuse its statement instead of changing what is stored.
        if (close != '\'' || at + 1 == statement_.size() || statement_[at + 1] != '\'') break;
        token_.quoteDoubled = true;
        at += 2;
    }
    token_.kind = kind;
    token_.text = statement_.substr(start, at - start);
    end_ = at + 1;
}

void Lexer::Number() {
    const char* const first = statement_.data() + end_;
    const char* const last = statement_.data() + statement_.size();
    const auto [behind, error] = std::from_chars(first, last, token_.number);
    end_ = static_cast<std::size_t>(behind - statement_.data());
    token_.kind = TokenKind::Number;
    token_.text = statement_.substr(token_.at, end_ - token_.at);
    const bool runsOn = behind != last && (IsWordCharacter(*behind) || *behind == '.');
    if (error != std::errc{} || runsOn) {
        RefuseStatement("The number at character " + std::to_string(token_.at + 1) +
                        " of the statement is none or is too large.");
    }
}

Token Lexer::Take() {
    Token taken = token_;
    Next();
    return taken;
}

bool Lexer::Accept(std::string_view keyword) {
    if (token_.kind != TokenKind::Word || !IsKeyword(token_.text, keyword)) return false;
    Next();
    return true;
}

bool Lexer::Accept(char symbol) {
    if (token_.kind != TokenKind::Symbol || token_.text.front() != symbol) return false;
    Next();
    return true;
}

void Lexer::Expect(std::string_view keyword) {
    if (!Accept(keyword)) Refuse(keyword);
}

void Lexer::Expect(char symbol) {
    if (!Accept(symbol)) Refuse(std::string{'"', symbol, '"'});
}

std::string_view Lexer::ExpectName(std::string_view what) {
    if ((token_.kind != TokenKind::Word && token_.kind != TokenKind::Name) || token_.text.empty())
        Refuse(what);
    return Take().text;
}

void Lexer::ExpectEnd() {
    Accept(';');
    if (token_.kind != TokenKind::End) Refuse("the end of the statement");
}

void Lexer::Refuse(std::string_view expected) const {
    std::string sentence = "The statement is none that the store knows: ";
    sentence += expected;
    sentence += " is missing";
    if (token_.kind == TokenKind::End) {
        sentence += " at its end.";
    } else {
        sentence += " before \"" + text::Left(statement_.substr(token_.at), 20) + "\" (character " +
                    std::to_string(token_.at + 1) + ").";
    }
    RefuseStatement(std::move(sentence));
}

}  // namespace zenvora::ado::detail
