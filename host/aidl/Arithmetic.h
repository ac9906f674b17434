#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "host/aidl/Ast.h"

namespace zarvo::host::aidl {

/** A value, or why there is none. */
using ValueOrError = std::variant<Value, std::string>;

/** The value of an integer literal with an optional sign, base prefix and suffix. */
ValueOrError IntegerLiteral(std::string_view literal);
/** The value of a floating-point literal; its text stays as written, without a suffix f. */
ValueOrError FloatLiteral(std::string_view literal);
/** The value of `op` applied to one value. */
ValueOrError ApplyUnary(std::string_view op, const Value& operand);
/** The value of `op` applied to two values. */
ValueOrError ApplyBinary(std::string_view op, const Value& left, const Value& right);

}  // namespace zarvo::host::aidl
