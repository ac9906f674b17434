#include "host/aidl/Checker.h"

#include <map>
#include <string>

#include "host/aidl/TypeChecker.h"
#include "host/aidl/ValueChecker.h"

namespace zarvo::host::aidl {

namespace {

/** Finds parcelables that hold themselves, in whatever way: no reader could bound its depth. */
class CycleFinder {
  public:
    explicit CycleFinder(Diagnostics& diagnostics) : mDiagnostics(diagnostics) {}

    void Visit(const Definition& definition) {
        const auto [found, isNew] = mDone.emplace(&definition, false);
        if (!isNew && !found->second) {
            Fail(definition, "type " + definition.name + " contains itself");
        }
        if (!isNew) return;
        if (++mDepth > kMaxDepth) {
            Fail(definition, "types contain each other too deeply");
        } else {
            for (const Field& field : definition.fields) {
                if (field.type.definition != nullptr) Visit(*field.type.definition);
            }
        }
        --mDepth;
        mDone[&definition] = true;
    }

  private:
    static constexpr int kMaxDepth = 64;

    void Fail(const Definition& definition, std::string_view text) {
        mDiagnostics.Error(definition.document->path, definition.position, text);
    }

    Diagnostics& mDiagnostics;
    /** False while the definition's fields are being visited. */
    std::map<const Definition*, bool> mDone;
    int mDepth = 0;
};

}  // namespace

bool CheckProgram(const Program& program, const CheckOptions& options, Diagnostics& diagnostics) {
    for (const auto& document : program.Documents()) {
        TypeChecker(program, *document, diagnostics).Check(options);
    }
    if (diagnostics.HasErrors()) return false;
    ValueChecker values(program, diagnostics);
    CycleFinder cycles(diagnostics);
    for (const auto& document : program.Documents()) {
        values.Check(*document);
        cycles.Visit(*document->definition);
    }
    return !diagnostics.HasErrors();
}

}  // namespace zarvo::host::aidl
