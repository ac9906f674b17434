#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/aidl/Ast.h"
#include "host/aidl/Checker.h"
#include "host/aidl/Diagnostics.h"
#include "host/aidl/Program.h"

namespace zarvo::host::aidl {

/**
 * Checks one file for everything but values: names, annotations, types of members, methods.
 * Connects types with their definitions.
 */
class TypeChecker {
  public:
    /** All arguments must outlive the checker. */
    TypeChecker(const Program& program, const Document& document, Diagnostics& diagnostics)
        : mProgram(program), mDocument(document), mDiagnostics(diagnostics) {}

    void Check(const CheckOptions& options);

  private:
    void CheckPackage();
    void CheckStability(const CheckOptions& options);
    void CheckImports();
    void CheckAnnotations(const std::vector<Annotation>& annotations,
                          std::span<const std::string_view> known);
    void CheckBacking();
    void CheckNames();
    void CheckName(const Named& named);
    void CheckConstants();
    void CheckFields();
    void CheckMethods();
    void CheckMethod(Method& method);
    void CheckArgument(Argument& argument, const Method& method, bool oneway);
    void CheckDirection(const Argument& argument);
    void NumberMethods();

    /** Connects a type with its definition; false, after a report, if that is not possible. */
    bool Resolve(Type& type);
    bool ResolveName(Type& type);
    bool CheckElement(const Type& type);
    bool CheckNullable(const Type& type);
    void Fail(Position position, std::string_view text);

    const Program& mProgram;
    const Document& mDocument;
    Diagnostics& mDiagnostics;
};

}  // namespace zarvo::host::aidl
