#include "host/aidl/ExpressionParser.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace zarvo::host::aidl {

namespace {

using StepKind = ExpressionStep::Kind;

constexpr size_t kMaxDepth = 64;
constexpr size_t kMaxSteps = 4096;

struct BinaryOperator {
    std::string_view text;
    int precedence;
};

constexpr std::array<BinaryOperator, 18> kBinaryOperators = {{{"||", 1},
                                                              {"&&", 2},
                                                              {"|", 3},
                                                              {"^", 4},
                                                              {"&", 5},
                                                              {"==", 6},
                                                              {"!=", 6},
                                                              {"<", 7},
                                                              {">", 7},
                                                              {"<=", 7},
                                                              {">=", 7},
                                                              {"<<", 8},
                                                              {">>", 8},
                                                              {"+", 9},
                                                              {"-", 9},
                                                              {"*", 10},
                                                              {"/", 10},
                                                              {"%", 10}}};

/** 0 for what is no binary operator. */
int Precedence(const Token& token) {
    if (token.kind != Token::Kind::kPunctuation) return 0;
    for (const BinaryOperator& binary : kBinaryOperators) {
        if (binary.text == token.text) return binary.precedence;
    }
    return 0;
}

bool IsUnary(const Token& token) {
    return token.Is("+") || token.Is("-") || token.Is("~") || token.Is("!");
}

}  // namespace

Expression ExpressionParser::Parse() {
    mExpression.position = mTokens.Peek().position;
    ParseBinary(1);
    return std::move(mExpression);
}

void ExpressionParser::ParseBinary(int lowestPrecedence) {
    ParseUnary();
    for (int precedence = Precedence(mTokens.Peek());
         precedence >= lowestPrecedence && precedence != 0;
         precedence = Precedence(mTokens.Peek())) {
        const Token op = mTokens.Take();
        ParseBinary(precedence + 1);
        Add({StepKind::kBinary, std::string(op.text), 2, op.position});
    }
}

void ExpressionParser::ParseUnary() {
    if (!IsUnary(mTokens.Peek())) return ParsePrimary();
    const Token op = mTokens.Take();
    const Token operand = mTokens.Peek();
    if (op.Is("-") && operand.kind == Token::Kind::kInteger) {
        // One literal, because the lowest number has no positive counterpart.
        mTokens.Take();
        return Add({StepKind::kInteger, "-" + std::string(operand.text), 0, op.position});
    }
    if (!Enter()) return;
    ParseUnary();
    Add({StepKind::kUnary, std::string(op.text), 1, op.position});
    --mDepth;
}

void ExpressionParser::ParsePrimary() {
    const Token token = mTokens.Peek();
    const auto literal = [&](StepKind kind) {
        mTokens.Take();
        Add({kind, std::string(token.text), 0, token.position});
    };
    switch (token.kind) {
        case Token::Kind::kInteger:
            return literal(StepKind::kInteger);
        case Token::Kind::kFloat:
            return literal(StepKind::kFloat);
        case Token::Kind::kString:
            return literal(StepKind::kString);
        case Token::Kind::kChar:
            return literal(StepKind::kChar);
        case Token::Kind::kIdentifier:
            if (token.text == "true" || token.text == "false") return literal(StepKind::kBool);
            return ParseReference();
        default:
            break;
    }
    if (token.Is("{")) return ParseList();
    if (!token.Is("(")) return mTokens.FailExpected("a constant expression");
    if (!Enter()) return;
    mTokens.Take();
    ParseBinary(1);
    mTokens.Expect(")");
    --mDepth;
}

void ExpressionParser::ParseReference() {
    const Position position = mTokens.Peek().position;
    Add({StepKind::kReference, mTokens.ExpectQualifiedName("a name"), 0, position});
}

void ExpressionParser::ParseList() {
    if (!Enter()) return;
    const Position position = mTokens.Take().position;
    size_t count = 0;
    while (!mTokens.Peek().Is("}") && !mTokens.AtEnd()) {
        ParseBinary(1);
        ++count;
        if (!mTokens.Accept(",")) break;
    }
    mTokens.Expect("}");
    Add({StepKind::kList, "{}", count, position});
    --mDepth;
}

void ExpressionParser::Add(ExpressionStep step) {
    if (mExpression.steps.size() == kMaxSteps) {
        return mTokens.Fail(step.position, "expression is too long");
    }
    mExpression.steps.push_back(std::move(step));
}

bool ExpressionParser::Enter() {
    if (mDepth == kMaxDepth) {
        mTokens.FailHere("expression is nested too deeply");
        return false;
    }
    ++mDepth;
    return true;
}

}  // namespace zarvo::host::aidl
