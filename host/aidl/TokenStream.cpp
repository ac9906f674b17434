#include "host/aidl/TokenStream.h"

#include <utility>

namespace zarvo::host::aidl {

namespace {

constexpr size_t kMaxNameLength = 255;

std::string Describe(const Token& token) {
    if (token.kind == Token::Kind::kEnd) return "the end of the file";
    return "'" + std::string(token.text.substr(0, 40)) + "'";
}

}  // namespace

TokenStream::TokenStream(std::string_view path, std::string_view text, Diagnostics& diagnostics)
    : mPath(path), mDiagnostics(diagnostics), mLexer(text) {
    Load();
}

void TokenStream::Load() {
    if (mFailed) return;
    mToken = mLexer.Next();
    if (mToken.kind == Token::Kind::kError) Fail(mToken.position, mToken.text);
}

Token TokenStream::Take() {
    Token token = mToken;
    if (!AtEnd()) Load();
    return token;
}

bool TokenStream::Accept(std::string_view word) {
    if (!mToken.Is(word)) return false;
    Load();
    return true;
}

bool TokenStream::Expect(std::string_view word) {
    if (Accept(word)) return true;
    FailExpected("'" + std::string(word) + "'");
    return false;
}

std::string TokenStream::ExpectIdentifier(std::string_view what) {
    if (mToken.kind != Token::Kind::kIdentifier) {
        FailExpected(what);
        return {};
    }
    return std::string(Take().text);
}

std::string TokenStream::ExpectQualifiedName(std::string_view what) {
    const Position start = mToken.position;
    std::string name = ExpectIdentifier(what);
    while (Accept(".")) {
        name += "." + ExpectIdentifier("a name after '.'");
        if (name.size() > kMaxNameLength) Fail(start, "name longer than 255 bytes");
    }
    return name;
}

void TokenStream::Fail(Position position, std::string_view text) {
    if (!mFailed) mDiagnostics.Error(mPath, position, text);
    mFailed = true;
    mToken = Token{Token::Kind::kEnd, {}, position, {}};
}

void TokenStream::FailExpected(std::string_view what) {
    Fail(mToken.position, "expected " + std::string(what) + ", not " + Describe(mToken));
}

}  // namespace zarvo::host::aidl
