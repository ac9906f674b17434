#include "host/aidl/NdkNames.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

std::string ReplaceDots(std::string_view name, std::string_view by) {
    std::string result;
    for (const char c : name) {
        if (c == '.') {
            result.append(by);
        } else {
            result += c;
        }
    }
    return result;
}

std::string_view BuiltinType(Builtin builtin) {
    switch (builtin) {
        case Builtin::kBoolean:
            return "bool";
        case Builtin::kByte:
            return "int8_t";
        case Builtin::kChar:
            return "char16_t";
        case Builtin::kInt:
            return "int32_t";
        case Builtin::kLong:
            return "int64_t";
        case Builtin::kFloat:
            return "float";
        case Builtin::kDouble:
            return "double";
        case Builtin::kString:
            return "std::string";
        case Builtin::kNone:
        case Builtin::kVoid:
            break;
    }
    return "void";
}

bool IsEnum(const Type& type) {
    return type.definition != nullptr && type.definition->IsEnum();
}

bool IsPassedByValue(const Type& type) {
    const bool primitive = type.definition == nullptr && type.builtin != Builtin::kString;
    return !type.IsVector() && (primitive || IsEnum(type));
}

std::string ElementValue(const Value& value, const Type& type) {
    if (value.enumeration != nullptr) return NdkClass(*value.enumeration) + "::" + value.text;
    switch (value.kind) {
        case Value::Kind::kBool:
            return value.number != 0 ? "true" : "false";
        case Value::Kind::kInt:
        case Value::Kind::kLong:
            // Elements of a byte array are unsigned.
            if (type.builtin == Builtin::kByte && type.IsVector()) {
                return std::to_string(static_cast<uint8_t>(value.number));
            }
            return NdkInteger(value.number, type.builtin);
        case Value::Kind::kChar:
            return value.text == "'" ? "u'\\''" : "u'" + value.text + "'";
        case Value::Kind::kFloat:
            return value.text + (type.builtin == Builtin::kFloat ? "f" : "");
        case Value::Kind::kString:
        case Value::Kind::kList:
            break;
    }
    return "\"" + value.text + "\"";
}

}  // namespace

std::string NdkNamespace(const Definition& definition) {
    return "aidl::" + ReplaceDots(definition.package, "::");
}

std::string NdkClass(const Definition& definition) {
    return "::" + NdkNamespace(definition) + "::" + definition.name;
}

std::string NdkBaseName(const Definition& definition) {
    const std::string& name = definition.name;
    const bool prefixed = name.size() > 1 && name[0] == 'I' && name[1] >= 'A' && name[1] <= 'Z';
    return prefixed ? name.substr(1) : name;
}

std::string NdkHeaderPath(const Definition& definition, const std::string& name) {
    return "aidl/" + ReplaceDots(definition.package, "/") + "/" + name + ".h";
}

std::string NdkSourcePath(const Definition& definition) {
    return ReplaceDots(definition.package, "/") + "/" + definition.name + ".cpp";
}

std::string NdkElementType(const Type& type) {
    if (type.definition == nullptr) {
        const bool unsignedByte = type.builtin == Builtin::kByte && type.IsVector();
        return unsignedByte ? "uint8_t" : std::string(BuiltinType(type.builtin));
    }
    const std::string name = NdkClass(*type.definition);
    return type.definition->IsInterface() ? "std::shared_ptr<" + name + ">" : name;
}

std::string NdkType(const Type& type) {
    const std::string element = NdkElementType(type);
    return type.IsVector() ? "std::vector<" + element + ">" : element;
}

std::string_view NdkNullable(const Type& type) {
    return type.IsNullable() ? "Nullable" : "";
}

std::string NdkParameterType(const Argument& argument) {
    const std::string type = NdkType(argument.type);
    if (argument.IsOut()) return type + "*";
    return IsPassedByValue(argument.type) ? type : "const " + type + "&";
}

std::string NdkParameterName(const Argument& argument) {
    if (!argument.IsOut()) return "in_" + argument.name;
    return (argument.IsIn() ? "inout_" : "out_") + argument.name;
}

std::string NdkParameters(const Method& method) {
    std::string parameters;
    for (const Argument& argument : method.arguments) {
        AppendSeparated(parameters, ", ",
                        NdkParameterType(argument) + " " + NdkParameterName(argument));
    }
    if (!method.returnType.IsVoid()) {
        AppendSeparated(parameters, ", ", NdkType(method.returnType) + "* _aidl_return");
    }
    return parameters;
}

std::string NdkValue(const Value& value, const Type& type) {
    if (value.kind != Value::Kind::kList) return ElementValue(value, type);
    std::string elements;
    for (const Value& element : value.elements) {
        AppendSeparated(elements, ", ", ElementValue(element, type));
    }
    return "{" + elements + "}";
}

std::string NdkInitializer(const Field& field) {
    if (field.value) return NdkValue(*field.value, field.type);
    if (!IsPassedByValue(field.type)) return {};
    if (IsEnum(field.type)) return "static_cast<" + NdkType(field.type) + ">(0)";
    switch (field.type.builtin) {
        case Builtin::kBoolean:
            return "false";
        case Builtin::kChar:
            return "u'\\0'";
        case Builtin::kFloat:
            return "0.0f";
        case Builtin::kDouble:
            return "0.0";
        default:
            return "0";
    }
}

std::string NdkInteger(int64_t number, Builtin builtin) {
    // The lowest number is no literal in C++: its digits alone are out of range.
    if (builtin == Builtin::kLong) {
        return number == std::numeric_limits<int64_t>::min() ? "(-9223372036854775807LL - 1)"
                                                             : std::to_string(number) + "LL";
    }
    return number == std::numeric_limits<int32_t>::min() ? "(-2147483647 - 1)"
                                                         : std::to_string(number);
}

}  // namespace zarvo::host::aidl
