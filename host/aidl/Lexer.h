#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/aidl/Diagnostics.h"

namespace zarvo::host::aidl {

/** One token. Its views look into the text that was lexed. */
struct Token {
    enum class Kind { kIdentifier, kInteger, kFloat, kString, kChar, kPunctuation, kEnd, kError };

    Kind kind = Kind::kEnd;
    /** As written; for kString and kChar without the quotes; for kError what is wrong. */
    std::string_view text;
    Position position;
    /** The block comments between the token before and this one. */
    std::vector<std::string_view> comments;

    /** Whether this is the given word or punctuation. */
    bool Is(std::string_view word) const {
        return (kind == Kind::kIdentifier || kind == Kind::kPunctuation) && text == word;
    }
};

/**
 * Cuts a text of unknown origin into tokens. Never fails as a whole: a byte sequence that is no
 * token comes back as kError, after which the lexer is not to be asked again.
 */
class Lexer {
  public:
    explicit Lexer(std::string_view text) : mText(text) {}
    Token Next();

  private:
    char Peek(size_t ahead = 0) const;
    bool StartsWith(std::string_view prefix) const;
    void Advance(size_t count);
    /** Passes blanks and comments; false at a comment without an end. */
    bool SkipToToken(Token& token);
    bool SkipBlockComment(Token& token);
    Token Take(Token token, Token::Kind kind, size_t length);
    Token Number(Token token);
    Token Quoted(Token token, Token::Kind kind, char quote);
    Token Punctuation(Token token);
    static Token Error(Token token, std::string_view text);

    std::string_view mText;
    size_t mOffset = 0;
    Position mPosition;
};

}  // namespace zarvo::host::aidl
