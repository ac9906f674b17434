#include "host/aidl/ApiCheck.h"

#include <string>
#include <vector>

#include "host/aidl/ApiDump.h"

namespace zarvo::host::aidl {

namespace {

template <typename Member>
const Member* FindMember(const std::vector<Member>& members, const std::string& name) {
    for (const Member& member : members) {
        if (member.name == name) return &member;
    }
    return nullptr;
}

/** What a caller of a method relies on; names of arguments are no part of it. */
std::string CallShape(const Definition& definition, const Method& method) {
    std::string shape = definition.IsOneway(method) ? "oneway " : "";
    shape += std::to_string(method.id) + TypeSignature(method.returnType);
    for (const Argument& argument : method.arguments) {
        shape += argument.IsIn() ? " in" : " ";
        shape += (argument.IsOut() ? "out " : " ") + TypeSignature(argument.type);
    }
    return shape;
}

/** Compares one type with its older version for compatibility. */
class CompatibilityCheck {
  public:
    CompatibilityCheck(const Definition& older, const Definition& newer, Diagnostics& diagnostics)
        : mOlder(older), mNewer(newer), mDiagnostics(diagnostics) {}

    void Check() {
        if (mOlder.kind != mNewer.kind || mOlder.backing != mNewer.backing ||
            mOlder.IsVintfStable() != mNewer.IsVintfStable()) {
            return Fail(mNewer.position, "kind, backing type or stability changed");
        }
        CheckFields();
        CheckMethods();
        CheckEnumerators();
        CheckConstants();
    }

  private:
    void CheckFields() {
        for (size_t i = 0; i < mOlder.fields.size(); ++i) {
            const Field& field = mOlder.fields[i];
            if (i >= mNewer.fields.size()) return FailMissing(field);
            const Field& now = mNewer.fields[i];
            if (field.name != now.name || TypeSignature(field.type) != TypeSignature(now.type)) {
                Fail(now.position, "field '" + field.name + "' changed or moved");
            } else if ((field.value ? ValueText(*field.value) : "") !=
                       (now.value ? ValueText(*now.value) : "")) {
                Fail(now.position, "default value of '" + field.name + "' changed");
            }
        }
    }

    void CheckMethods() {
        for (const Method& method : mOlder.methods) {
            const Method* now = FindMember(mNewer.methods, method.name);
            if (now == nullptr) {
                FailMissing(method);
            } else if (CallShape(mOlder, method) != CallShape(mNewer, *now)) {
                Fail(now->position, "method '" + method.name + "' or its number changed");
            }
        }
    }

    void CheckEnumerators() {
        for (const Enumerator& enumerator : mOlder.enumerators) {
            const Enumerator* now = FindMember(mNewer.enumerators, enumerator.name);
            if (now == nullptr) {
                FailMissing(enumerator);
            } else if (now->value != enumerator.value) {
                Fail(now->position, "value of '" + enumerator.name + "' changed");
            }
        }
    }

    void CheckConstants() {
        for (const Constant& constant : mOlder.constants) {
            const Constant* now = FindMember(mNewer.constants, constant.name);
            if (now == nullptr) {
                FailMissing(constant);
            } else if (TypeSignature(now->type) != TypeSignature(constant.type) ||
                       ValueText(now->value) != ValueText(constant.value)) {
                Fail(now->position, "constant '" + constant.name + "' changed");
            }
        }
    }

    void FailMissing(const Named& named) {
        Fail(mNewer.position, "'" + named.name + "' is missing");
    }

    void Fail(Position position, const std::string& text) {
        mDiagnostics.Error(mNewer.document->path, position, mNewer.name + ": " + text);
    }

    const Definition& mOlder;
    const Definition& mNewer;
    Diagnostics& mDiagnostics;
};

void ReportAddedTypes(const Program& older, const Program& newer, Diagnostics& diagnostics) {
    for (const Definition* definition : newer.Inputs()) {
        if (older.FindQualified(definition->QualifiedName()) == nullptr) {
            diagnostics.Error(definition->document->path, definition->position,
                              "type " + definition->QualifiedName() + " is new");
        }
    }
}

}  // namespace

bool CheckApi(const Program& older, const Program& newer, ApiCheckLevel level,
              Diagnostics& diagnostics) {
    for (const Definition* definition : older.Inputs()) {
        const Definition* now = newer.FindQualified(definition->QualifiedName());
        if (now == nullptr) {
            diagnostics.Error(definition->document->path, definition->position,
                              "type " + definition->QualifiedName() + " is missing");
        } else if (level == ApiCheckLevel::kCompatible) {
            CompatibilityCheck(*definition, *now, diagnostics).Check();
        } else if (DumpDefinition(*definition) != DumpDefinition(*now)) {
            diagnostics.Error(now->document->path, now->position,
                              "type " + now->QualifiedName() + " changed");
        }
    }
    if (level == ApiCheckLevel::kEqual) ReportAddedTypes(older, newer, diagnostics);
    return !diagnostics.HasErrors();
}

}  // namespace zarvo::host::aidl
