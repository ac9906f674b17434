#pragma once

#include <cstddef>

#include "host/aidl/Ast.h"
#include "host/aidl/TokenStream.h"

namespace zarvo::host::aidl {

/**
 * Reads one constant expression: literals, names of constants, parentheses, lists in braces, the
 * unary + - ~ ! and C's binary operators with C's precedence. At most 4096 steps, nested at most
 * 64 deep. Errors go to the stream.
 */
class ExpressionParser {
  public:
    explicit ExpressionParser(TokenStream& tokens) : mTokens(tokens) {}
    Expression Parse();

  private:
    void ParseBinary(int lowestPrecedence);
    void ParseUnary();
    void ParsePrimary();
    void ParseList();
    void ParseReference();
    void Add(ExpressionStep step);
    bool Enter();

    TokenStream& mTokens;
    Expression mExpression;
    size_t mDepth = 0;
};

}  // namespace zarvo::host::aidl
