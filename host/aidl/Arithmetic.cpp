#include "host/aidl/Arithmetic.h"

#include <charconv>
#include <limits>
#include <optional>
#include <utility>

namespace zarvo::host::aidl {

namespace {

using Kind = Value::Kind;

constexpr size_t kMaxStringLength = 1024;

bool IsInteger(const Value& value) {
    return value.kind == Kind::kInt || value.kind == Kind::kLong;
}

bool IsTruth(const Value& value) {
    return value.kind == Kind::kBool || IsInteger(value);
}

Value MakeBool(bool value) {
    return {Kind::kBool, value ? 1 : 0, {}, nullptr, {}};
}

bool FitsInt(int64_t number) {
    return number >= std::numeric_limits<int32_t>::min() &&
           number <= std::numeric_limits<int32_t>::max();
}

ValueOrError MakeInteger(Kind kind, int64_t number) {
    if (kind == Kind::kInt && !FitsInt(number)) return "result does not fit 32 bits";
    return Value{kind, number, {}, nullptr, {}};
}

Kind WiderKind(const Value& left, const Value& right) {
    return left.kind == Kind::kLong || right.kind == Kind::kLong ? Kind::kLong : Kind::kInt;
}

/** Removes `suffix` from the end of `text` if it is there. */
bool RemoveSuffix(std::string_view& text, std::string_view suffix) {
    if (!text.ends_with(suffix)) return false;
    text.remove_suffix(suffix.size());
    return true;
}

struct Digits {
    std::string_view text;
    int base = 10;
    bool negative = false;
    bool isLong = false;
    bool isByte = false;
};

Digits SplitLiteral(std::string_view literal) {
    Digits digits;
    digits.negative = literal.starts_with('-');
    literal.remove_prefix(digits.negative ? 1 : 0);
    if (literal.starts_with("0x") || literal.starts_with("0X")) {
        digits.base = 16;
        literal.remove_prefix(2);
    }
    digits.isByte = RemoveSuffix(literal, "u8");
    digits.isLong = !digits.isByte && (RemoveSuffix(literal, "L") || RemoveSuffix(literal, "l"));
    digits.text = literal;
    return digits;
}

ValueOrError ByteLiteral(uint64_t magnitude, bool negative) {
    if (magnitude > 0xff || negative) return "byte literal is not within 0u8 and 255u8";
    return Value{Kind::kInt, static_cast<int8_t>(magnitude), {}, nullptr, {}};
}

ValueOrError HexLiteral(const Digits& digits, uint64_t bits) {
    const bool isLong = digits.isLong || bits > 0xffffffff;
    const int64_t number =
            isLong ? static_cast<int64_t>(bits) : static_cast<int32_t>(static_cast<uint32_t>(bits));
    if (!digits.negative) return Value{isLong ? Kind::kLong : Kind::kInt, number, {}, nullptr, {}};
    if (number == std::numeric_limits<int64_t>::min()) return "integer literal is too large";
    return MakeInteger(isLong ? Kind::kLong : Kind::kInt, -number);
}

ValueOrError DecimalLiteral(const Digits& digits, uint64_t magnitude) {
    constexpr uint64_t kMax = std::numeric_limits<int64_t>::max();
    if (magnitude > kMax + (digits.negative ? 1 : 0)) return "integer literal is too large";
    const int64_t number = static_cast<int64_t>(digits.negative ? 0 - magnitude : magnitude);
    const bool isLong = digits.isLong || !FitsInt(number);
    return Value{isLong ? Kind::kLong : Kind::kInt, number, {}, nullptr, {}};
}

/** Nothing if the operation has no result within 64 bits. */
std::optional<int64_t> Calculate(std::string_view op, int64_t left, int64_t right) {
    int64_t result = 0;
    if (op == "+") {
        if (__builtin_add_overflow(left, right, &result)) return std::nullopt;
    } else if (op == "-") {
        if (__builtin_sub_overflow(left, right, &result)) return std::nullopt;
    } else if (op == "*") {
        if (__builtin_mul_overflow(left, right, &result)) return std::nullopt;
    } else if (op == "&") {
        result = left & right;
    } else if (op == "|") {
        result = left | right;
    } else {
        result = left ^ right;
    }
    return result;
}

ValueOrError Divide(std::string_view op, Kind kind, int64_t left, int64_t right) {
    if (right == 0) return "division by zero";
    if (right == -1) {
        if (left == std::numeric_limits<int64_t>::min()) return "result does not fit 64 bits";
        return MakeInteger(kind, op == "/" ? -left : 0);
    }
    return MakeInteger(kind, op == "/" ? left / right : left % right);
}

/** The result is as wide as the left operand; bits shifted out to the left are lost. */
ValueOrError Shift(std::string_view op, const Value& left, int64_t amount) {
    const int64_t width = left.kind == Kind::kLong ? 64 : 32;
    if (amount < 0 || amount >= width) return "shift by a negative number or too far";
    if (op == ">>") return MakeInteger(left.kind, left.number >> amount);
    const uint64_t bits = static_cast<uint64_t>(left.number) << amount;
    const int64_t number = width == 64 ? static_cast<int64_t>(bits)
                                       : static_cast<int32_t>(static_cast<uint32_t>(bits));
    return MakeInteger(left.kind, number);
}

/** Nothing if `op` is no comparison. */
std::optional<bool> Compare(std::string_view op, int64_t left, int64_t right) {
    if (op == "==") return left == right;
    if (op == "!=") return left != right;
    if (op == "<") return left < right;
    if (op == ">") return left > right;
    if (op == "<=") return left <= right;
    if (op == ">=") return left >= right;
    return std::nullopt;
}

std::string NotFor(std::string_view op) {
    return "operator " + std::string(op) + " cannot be applied to these values";
}

ValueOrError JoinStrings(const Value& left, const Value& right) {
    if (left.text.size() + right.text.size() > kMaxStringLength) return "string is too long";
    return Value{Kind::kString, 0, left.text + right.text, nullptr, {}};
}

}  // namespace

ValueOrError IntegerLiteral(std::string_view literal) {
    const Digits digits = SplitLiteral(literal);
    uint64_t magnitude = 0;
    const char* const end = digits.text.data() + digits.text.size();
    const auto [stop, error] = std::from_chars(digits.text.data(), end, magnitude, digits.base);
    if (error == std::errc::result_out_of_range) return "integer literal is too large";
    if (error != std::errc() || stop != end) return "malformed integer literal";
    if (digits.isByte) return ByteLiteral(magnitude, digits.negative);
    return digits.base == 16 ? HexLiteral(digits, magnitude) : DecimalLiteral(digits, magnitude);
}

ValueOrError FloatLiteral(std::string_view literal) {
    RemoveSuffix(literal, "f");
    double number = 0;
    const char* const end = literal.data() + literal.size();
    const auto [stop, error] = std::from_chars(literal.data(), end, number);
    if (error == std::errc::result_out_of_range) return "floating-point literal is out of range";
    if (error != std::errc() || stop != end) return "malformed floating-point literal";
    std::string text(literal);
    // In C++ a number without point and exponent would be an integer.
    if (text.find_first_of(".eE") == std::string::npos) text += ".0";
    return Value{Kind::kFloat, 0, std::move(text), nullptr, {}};
}

ValueOrError ApplyUnary(std::string_view op, const Value& operand) {
    if (op == "!" && IsTruth(operand)) return MakeBool(operand.number == 0);
    if (operand.kind == Kind::kFloat && (op == "-" || op == "+")) {
        Value value = operand;
        if (op == "+") return value;
        const bool negative = value.text.starts_with('-');
        value.text = negative ? value.text.substr(1) : "-" + value.text;
        return value;
    }
    if (!IsInteger(operand) || op == "!") return NotFor(op);
    if (op == "+") return MakeInteger(operand.kind, operand.number);
    if (op == "~") return MakeInteger(operand.kind, ~operand.number);
    return ApplyBinary("-", Value{operand.kind, 0, {}, nullptr, {}}, operand);
}

ValueOrError ApplyBinary(std::string_view op, const Value& left, const Value& right) {
    if (op == "+" && left.kind == Kind::kString && right.kind == Kind::kString) {
        return JoinStrings(left, right);
    }
    if (!IsTruth(left) || !IsTruth(right)) return NotFor(op);
    if (op == "&&") return MakeBool(left.number != 0 && right.number != 0);
    if (op == "||") return MakeBool(left.number != 0 || right.number != 0);
    if (const std::optional<bool> truth = Compare(op, left.number, right.number)) {
        return MakeBool(*truth);
    }
    if (!IsInteger(left) || !IsInteger(right)) return NotFor(op);
    if (op == "<<" || op == ">>") return Shift(op, left, right.number);
    const Kind kind = WiderKind(left, right);
    if (op == "/" || op == "%") return Divide(op, kind, left.number, right.number);
    if (const std::optional<int64_t> number = Calculate(op, left.number, right.number)) {
        return MakeInteger(kind, *number);
    }
    return "result does not fit 64 bits";
}

}  // namespace zarvo::host::aidl
