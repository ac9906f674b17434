#pragma once

#include <string>
#include <string_view>

#include "host/aidl/Diagnostics.h"
#include "host/aidl/Lexer.h"

namespace zarvo::host::aidl {

/**
 * The tokens of one file with one of them in sight, and the file's first syntax error. After an
 * error the stream is at its end for good, so that every loop over it comes to an end.
 */
class TokenStream {
  public:
    /** Nothing is copied: path, text and diagnostics must outlive the stream. */
    TokenStream(std::string_view path, std::string_view text, Diagnostics& diagnostics);

    const Token& Peek() const { return mToken; }
    bool AtEnd() const { return mToken.kind == Token::Kind::kEnd; }
    bool Failed() const { return mFailed; }

    /** Takes the token in sight. */
    Token Take();
    /** Takes the given word or punctuation if it is in sight. */
    bool Accept(std::string_view word);
    /** Takes the given word or punctuation; anything else is an error. */
    bool Expect(std::string_view word);
    /** Takes an identifier; anything else is an error that asks for `what`. */
    std::string ExpectIdentifier(std::string_view what);
    /** Takes identifiers joined by dots, 255 bytes at most. */
    std::string ExpectQualifiedName(std::string_view what);

    /** Reports the file's first error, and ends the stream. */
    void Fail(Position position, std::string_view text);
    /** The same, where the token in sight stands. */
    void FailHere(std::string_view text) { Fail(mToken.position, text); }
    /** Reports that `what` was expected where the token in sight stands. */
    void FailExpected(std::string_view what);

  private:
    void Load();

    std::string_view mPath;
    Diagnostics& mDiagnostics;
    Lexer mLexer;
    Token mToken;
    bool mFailed = false;
};

}  // namespace zarvo::host::aidl
