#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "host/aidl/Ast.h"
#include "host/aidl/Diagnostics.h"
#include "host/aidl/Program.h"

namespace zarvo::host::aidl {

/**
 * Computes the constants, enumerators and default values of one file whose types are checked.
 * What they refer to in other files is computed on the way, each value once.
 */
class ValueChecker {
  public:
    /** All arguments must outlive the checker. */
    ValueChecker(const Program& program, Diagnostics& diagnostics)
        : mProgram(program), mDiagnostics(diagnostics) {}

    void Check(const Document& document);

  private:
    void EvaluateConstant(const Document& document, Constant& constant);
    void EvaluateEnum(const Document& document);
    void EvaluateField(const Document& document, Field& field);
    std::optional<Value> Evaluate(const Document& document, const Expression& expression,
                                  const Type& type);
    const Value* Lookup(const Document& document, std::string_view name, Position position);
    const Value* FindConstant(const Document& owner, std::string_view name);
    const Value* FindEnumerator(const Document& owner, std::string_view name);
    const Document* FindOwner(const Document& document, std::string_view type) const;

    const Program& mProgram;
    Diagnostics& mDiagnostics;
    size_t mDepth = 0;
    /** The enumerator looked up last. */
    Value mEnumerator;
};

}  // namespace zarvo::host::aidl
