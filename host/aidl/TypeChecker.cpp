#include "host/aidl/TypeChecker.h"

#include <array>
#include <set>

#include "host/aidl/Builtins.h"

namespace zarvo::host::aidl {

namespace {

/** Two numbers at the top are those of getInterfaceVersion and getInterfaceHash. */
constexpr uint32_t kMaxMethodId = 16777114;

constexpr std::string_view kTypeAnnotations[] = {"VintfStability", "Backing", "JavaDerive",
                                                 "SuppressWarnings"};
constexpr std::string_view kMemberAnnotations[] = {"nullable", "utf8InCpp", "SuppressWarnings"};

bool IsData(const Type& type) {
    return type.definition != nullptr && !type.definition->IsInterface() &&
           !type.definition->IsEnum();
}

bool IsInterface(const Type& type) {
    return type.definition != nullptr && type.definition->IsInterface();
}

/** Calls `visit` with every named member of a definition. */
template <typename Visit>
void ForEachMember(const Definition& definition, const Visit& visit) {
    for (const Constant& constant : definition.constants)
        visit(constant);
    for (const Field& field : definition.fields)
        visit(field);
    for (const Method& method : definition.methods)
        visit(method);
    for (const Enumerator& enumerator : definition.enumerators)
        visit(enumerator);
}

}  // namespace

void TypeChecker::Check(const CheckOptions& options) {
    CheckPackage();
    CheckImports();
    CheckAnnotations(mDocument.definition->annotations, kTypeAnnotations);
    CheckStability(options);
    CheckBacking();
    CheckNames();
    CheckConstants();
    CheckFields();
    CheckMethods();
}

void TypeChecker::CheckPackage() {
    std::string_view rest = mDocument.package;
    for (bool more = true; more;) {
        const size_t dot = rest.find('.');
        const std::string_view part = rest.substr(0, dot);
        if (IsReservedWord(part)) {
            Fail(mDocument.packagePosition, "'" + std::string(part) + "' may not be a name");
        }
        more = dot != std::string_view::npos;
        if (more) rest.remove_prefix(dot + 1);
    }
}

void TypeChecker::CheckImports() {
    std::set<std::string_view> names;
    for (const Import& import : mDocument.imports) {
        const std::string_view name =
                std::string_view(import.name).substr(import.name.rfind('.') + 1);
        if (!names.insert(name).second || name == mDocument.definition->name) {
            Fail(import.position, "the name " + std::string(name) + " is imported twice");
        }
    }
}

void TypeChecker::CheckStability(const CheckOptions& options) {
    const Definition& definition = *mDocument.definition;
    if (options.vintfStability && !definition.IsVintfStable()) {
        Fail(definition.position, "type " + definition.name +
                                          " has to be marked @VintfStability, because of "
                                          "--stability vintf");
    }
    if (!options.vintfStability && definition.IsVintfStable()) {
        Fail(definition.position,
             "type " + definition.name + " is marked @VintfStability: --stability vintf is needed");
    }
}

void TypeChecker::CheckAnnotations(const std::vector<Annotation>& annotations,
                                   std::span<const std::string_view> known) {
    std::set<std::string_view> seen;
    for (const Annotation& annotation : annotations) {
        bool isKnown = false;
        for (const std::string_view name : known)
            isKnown |= name == annotation.name;
        if (!isKnown) {
            Fail(annotation.position, "annotation @" + annotation.name + " is not supported here");
        }
        if (!seen.insert(annotation.name).second) {
            Fail(annotation.position, "annotation @" + annotation.name + " is given twice");
        }
    }
}

void TypeChecker::CheckBacking() {
    Definition& definition = *mDocument.definition;
    const Annotation* backing = definition.FindAnnotation("Backing");
    if (backing == nullptr) return;
    if (!definition.IsEnum()) return Fail(backing->position, "only an enum has a backing type");
    for (const Builtin builtin : {Builtin::kByte, Builtin::kInt, Builtin::kLong}) {
        const std::string literal = "\"" + std::string(BuiltinName(builtin)) + "\"";
        if (backing->parameters.size() == 1 && backing->parameters[0].name == "type" &&
            backing->parameters[0].literal == literal) {
            definition.backing = builtin;
            return;
        }
    }
    Fail(backing->position, "expected @Backing(type=\"byte\"), \"int\" or \"long\"");
}

void TypeChecker::CheckNames() {
    const Definition& definition = *mDocument.definition;
    CheckName(definition);
    if (IsUnsupportedBuiltin(definition.name) || FindBuiltin(definition.name) != Builtin::kNone) {
        Fail(definition.position, "'" + definition.name + "' is a type of AIDL itself");
    }
    std::set<std::string_view> names;
    ForEachMember(definition, [&](const Named& member) {
        CheckName(member);
        if (IsTakenMember(definition, member.name)) {
            Fail(member.position, "the name '" + member.name + "' is taken by generated code");
        }
        if (!names.insert(member.name).second) {
            Fail(member.position, "the name '" + member.name + "' is used twice");
        }
    });
    if (definition.kind == Definition::Kind::kUnion && definition.fields.empty()) {
        Fail(definition.position, "a union has at least one field");
    }
    if (definition.IsEnum() && definition.enumerators.empty()) {
        Fail(definition.position, "an enum has at least one enumerator");
    }
}

void TypeChecker::CheckName(const Named& named) {
    if (IsReservedWord(named.name)) Fail(named.position, "'" + named.name + "' may not be a name");
}

void TypeChecker::CheckConstants() {
    for (Constant& constant : mDocument.definition->constants) {
        Resolve(constant.type);
        const Builtin builtin = constant.type.builtin;
        const bool allowed = builtin == Builtin::kByte || builtin == Builtin::kInt ||
                             builtin == Builtin::kLong || builtin == Builtin::kString;
        if (!allowed || constant.type.IsVector() || constant.type.IsNullable()) {
            Fail(constant.type.position, "a constant is a byte, int, long or String");
        }
    }
}

void TypeChecker::CheckFields() {
    for (Field& field : mDocument.definition->fields) {
        if (Resolve(field.type) && field.type.IsVoid()) {
            Fail(field.type.position, "a field cannot be void");
        }
    }
}

void TypeChecker::CheckMethods() {
    for (Method& method : mDocument.definition->methods)
        CheckMethod(method);
    NumberMethods();
}

void TypeChecker::CheckMethod(Method& method) {
    const bool oneway = mDocument.definition->IsOneway(method);
    if (Resolve(method.returnType) && oneway && !method.returnType.IsVoid()) {
        Fail(method.returnType.position, "a oneway method returns void");
    }
    std::set<std::string_view> names;
    for (Argument& argument : method.arguments) {
        CheckArgument(argument, method, oneway);
        if (!names.insert(argument.name).second) {
            Fail(argument.position, "the name '" + argument.name + "' is used twice");
        }
    }
}

void TypeChecker::CheckArgument(Argument& argument, const Method& method, bool oneway) {
    // Generated code puts a prefix in front, so that any other word will do.
    if (IsAidlWord(argument.name)) {
        Fail(argument.position, "'" + argument.name + "' may not be a name");
    }
    if (!Resolve(argument.type)) return;
    if (argument.type.IsVoid()) return Fail(argument.type.position, "an argument cannot be void");
    CheckDirection(argument);
    if (oneway && argument.IsOut()) {
        Fail(argument.position, "oneway method '" + method.name + "' cannot have out arguments");
    }
}

void TypeChecker::CheckDirection(const Argument& argument) {
    const bool canBeOut = argument.type.IsVector() || IsData(argument.type);
    if (canBeOut && argument.direction == Direction::kNone) {
        Fail(argument.position, "argument '" + argument.name + "' needs in, out or inout");
    }
    if (!canBeOut && argument.IsOut()) {
        Fail(argument.position, "an argument of type '" + argument.type.name + "' can only be in");
    }
}

void TypeChecker::NumberMethods() {
    std::set<uint32_t> ids;
    std::vector<Method>& methods = mDocument.definition->methods;
    for (size_t index = 0; index < methods.size(); ++index) {
        Method& method = methods[index];
        if (method.givenId.has_value() != methods.front().givenId.has_value()) {
            return Fail(method.position, "either all methods or none have numbers");
        }
        method.id = method.givenId.value_or(static_cast<uint32_t>(index));
        if (method.id > kMaxMethodId)
            Fail(method.position, "a method's number is 16777114 at most");
        if (!ids.insert(method.id).second) {
            Fail(method.position, "the number " + std::to_string(method.id) + " is used twice");
        }
    }
}

bool TypeChecker::Resolve(Type& type) {
    CheckAnnotations(type.annotations, kMemberAnnotations);
    return ResolveName(type) && CheckElement(type) && CheckNullable(type);
}

bool TypeChecker::ResolveName(Type& type) {
    type.builtin = FindBuiltin(type.name);
    if (type.builtin != Builtin::kNone) return true;
    type.definition = mProgram.Find(mDocument, type.name);
    if (type.definition != nullptr) return true;
    const bool own = IsUnsupportedBuiltin(type.name);
    Fail(type.position, own ? "type '" + type.name + "' is not supported"
                            : "cannot find the type '" + type.name + "'");
    return false;
}

bool TypeChecker::CheckElement(const Type& type) {
    if (!type.IsVector()) return true;
    if (type.IsVoid() || IsInterface(type)) {
        Fail(type.position, "arrays and lists of '" + type.name + "' are not supported");
        return false;
    }
    if (type.isList && type.builtin != Builtin::kString && !IsData(type)) {
        Fail(type.position, "a list holds Strings or parcelables; use '" + type.name + "[]'");
        return false;
    }
    return true;
}

bool TypeChecker::CheckNullable(const Type& type) {
    if (!type.IsNullable() || (IsInterface(type) && !type.IsVector())) return true;
    Fail(type.position, "@nullable is supported for interfaces only");
    return false;
}

void TypeChecker::Fail(Position position, std::string_view text) {
    mDiagnostics.Error(mDocument.path, position, text);
}

}  // namespace zarvo::host::aidl
