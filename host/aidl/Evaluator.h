#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/aidl/Ast.h"
#include "host/aidl/Diagnostics.h"

namespace zarvo::host::aidl {

/**
 * Computes constant expressions, and fits their values to the types of what they are assigned to.
 *
 * Integers without suffix are 32 bits wide if they fit and 64 otherwise, with the suffix L always
 * 64; with u8 they are a byte given by its bits. Hexadecimal literals give the bits of the number.
 * A result that does not fit its operands' wider type is an error, as are a division by zero and
 * a shift by the operand's width or more. Strings are joined with +. Floating-point numbers are
 * literals with a sign and are not computed with.
 */
class Evaluator {
  public:
    /** Gives the value that a name stands for; null after having reported why there is none. */
    using Lookup = std::function<const Value*(std::string_view name, Position position)>;

    /** For the expressions of one file; both arguments must outlive the evaluator. */
    Evaluator(std::string_view path, Diagnostics& diagnostics)
        : mPath(path), mDiagnostics(diagnostics) {}

    /** Nothing if the expression has no value; the reason is then reported. */
    std::optional<Value> Evaluate(const Expression& expression, const Lookup& lookup);

    /**
     * The value as one of the (checked) type: in range, and every list element likewise. Nothing
     * if it does not fit; the reason is then reported at `position`.
     */
    std::optional<Value> Convert(const Value& value, const Type& type, Position position);

  private:
    std::optional<Value> ConvertElements(const Value& value, const Type& type, Position position);
    std::optional<Value> ConvertElement(const Value& value, const Type& type, Position position);
    std::optional<Value> ConvertEnumerator(const Value& value, const Type& type, Position position);
    std::optional<Value> ConvertInteger(const Value& value, Builtin builtin, Position position);
    std::optional<Value> ConvertFloat(const Value& value, Builtin builtin, Position position);
    std::nullopt_t Fail(Position position, std::string_view text);

    std::string_view mPath;
    Diagnostics& mDiagnostics;
};

}  // namespace zarvo::host::aidl
