#include "host/aidl/Lexer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zarvo::host::aidl {

namespace {

constexpr size_t kMaxWordLength = 255;
constexpr std::array<std::string_view, 8> kTwoCharacters = {
        "<<", ">>", "<=", ">=", "==", "!=", "&&", "||"};
constexpr std::string_view kOneCharacter = "{}()[]<>,;.=@+-*/%&|^~!";

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool IsHex(std::string_view number) {
    return number.starts_with("0x") || number.starts_with("0X");
}

bool IsFloat(std::string_view number) {
    return !IsHex(number) && number.find_first_of(".eEf") != std::string_view::npos;
}

}  // namespace

char Lexer::Peek(size_t ahead) const {
    return ahead < mText.size() - mOffset ? mText[mOffset + ahead] : '\0';
}

bool Lexer::StartsWith(std::string_view prefix) const {
    return mText.substr(mOffset).starts_with(prefix);
}

void Lexer::Advance(size_t count) {
    for (const char c : mText.substr(mOffset, count)) {
        mPosition = c == '\n' ? Position{mPosition.line + 1, 1}
                              : Position{mPosition.line, mPosition.column + 1};
    }
    mOffset += std::min(count, mText.size() - mOffset);
}

bool Lexer::SkipToToken(Token& token) {
    while (mOffset < mText.size()) {
        if (IsBlank(Peek())) {
            Advance(1);
        } else if (StartsWith("//")) {
            Advance(mText.substr(mOffset).find('\n'));
        } else if (StartsWith("/*")) {
            if (!SkipBlockComment(token)) return false;
        } else {
            break;
        }
    }
    return true;
}

bool Lexer::SkipBlockComment(Token& token) {
    const size_t end = mText.find("*/", mOffset + 2);
    if (end == std::string_view::npos) return false;
    const size_t length = end + 2 - mOffset;
    token.comments.push_back(mText.substr(mOffset, length));
    Advance(length);
    return true;
}

Token Lexer::Next() {
    Token token;
    const bool closed = SkipToToken(token);
    token.position = mPosition;
    if (!closed) return Error(std::move(token), "comment without an end");
    if (mOffset == mText.size()) return token;

    const char c = Peek();
    if (IsDigit(c)) return Number(std::move(token));
    if (c == '"') return Quoted(std::move(token), Token::Kind::kString, '"');
    if (c == '\'') return Quoted(std::move(token), Token::Kind::kChar, '\'');
    if (!IsLetter(c)) return Punctuation(std::move(token));
    size_t length = 1;
    while (IsLetter(Peek(length)) || IsDigit(Peek(length))) {
        ++length;
    }
    return Take(std::move(token), Token::Kind::kIdentifier, length);
}

Token Lexer::Take(Token token, Token::Kind kind, size_t length) {
    if (length > kMaxWordLength) return Error(std::move(token), "word longer than 255 bytes");
    token.kind = kind;
    token.text = mText.substr(mOffset, length);
    Advance(length);
    return token;
}

Token Lexer::Number(Token token) {
    const bool hex = IsHex(mText.substr(mOffset, 2));
    size_t length = 1;
    for (char before = Peek();; before = Peek(length++)) {
        const char c = Peek(length);
        const bool sign = !hex && (before == 'e' || before == 'E') && (c == '+' || c == '-');
        if (!IsDigit(c) && !IsLetter(c) && c != '.' && !sign) break;
    }
    const bool isFloat = IsFloat(mText.substr(mOffset, length));
    return Take(std::move(token), isFloat ? Token::Kind::kFloat : Token::Kind::kInteger, length);
}

Token Lexer::Quoted(Token token, Token::Kind kind, char quote) {
    size_t length = 1;
    while (Peek(length) >= ' ' && Peek(length) < '\x7f' && Peek(length) != quote) {
        if (Peek(length) == '\\') return Error(std::move(token), "escapes are not supported");
        ++length;
    }
    if (Peek(length) != quote) {
        return Error(std::move(token),
                     "a literal ends on its line and holds printable ASCII characters only");
    }
    token.kind = kind;
    token.text = mText.substr(mOffset + 1, length - 1);
    Advance(length + 1);
    return token;
}

Token Lexer::Punctuation(Token token) {
    for (const std::string_view pair : kTwoCharacters) {
        if (StartsWith(pair)) return Take(std::move(token), Token::Kind::kPunctuation, 2);
    }
    if (kOneCharacter.find(Peek()) != std::string_view::npos) {
        return Take(std::move(token), Token::Kind::kPunctuation, 1);
    }
    return Error(std::move(token), "character that no AIDL file holds here");
}

Token Lexer::Error(Token token, std::string_view text) {
    token.kind = Token::Kind::kError;
    token.text = text;
    return token;
}

}  // namespace zarvo::host::aidl
