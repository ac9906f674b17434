#include "host/aidl/ApiDump.h"

#include <string_view>

#include "host/aidl/Builtins.h"

namespace zarvo::host::aidl {

namespace {

std::string_view KindWord(Definition::Kind kind) {
    switch (kind) {
        case Definition::Kind::kInterface:
            return "interface";
        case Definition::Kind::kParcelable:
            return "parcelable";
        case Definition::Kind::kUnion:
            return "union";
        case Definition::Kind::kEnum:
            break;
    }
    return "enum";
}

std::string_view DirectionWord(Direction direction) {
    switch (direction) {
        case Direction::kNone:
            return "";
        case Direction::kIn:
            return "in ";
        case Direction::kOut:
            return "out ";
        case Direction::kInOut:
            break;
    }
    return "inout ";
}

std::string AnnotationText(const Annotation& annotation) {
    std::string text;
    for (const AnnotationParameter& parameter : annotation.parameters) {
        text += (text.empty() ? "(" : ", ") + parameter.name + "=" + parameter.literal;
    }
    return "@" + annotation.name + text + (text.empty() ? "" : ")");
}

std::string ListText(const Value& value) {
    std::string text = "{";
    for (const Value& element : value.elements) {
        text += (text.size() > 1 ? ", " : "") + ValueText(element);
    }
    return text + "}";
}

std::string ArgumentText(const Argument& argument) {
    return std::string(DirectionWord(argument.direction)) + TypeSignature(argument.type) + " " +
           argument.name;
}

/** One line of a body, with the remark in front. */
std::string Line(const Named& named, const std::string& text) {
    const std::string remark = named.remark.empty() ? "" : "  " + named.remark + "\n";
    return remark + "  " + text + "\n";
}

std::string FieldLine(const Field& field) {
    const std::string value = field.value ? " = " + ValueText(*field.value) : "";
    return Line(field, TypeSignature(field.type) + " " + field.name + value + ";");
}

std::string MethodLine(const Method& method) {
    const std::string id = method.givenId ? " = " + std::to_string(*method.givenId) : "";
    return Line(method, (method.oneway ? "oneway " : "") + MethodSignature(method) + id + ";");
}

std::string ConstantLine(const Constant& constant) {
    return Line(constant, "const " + TypeSignature(constant.type) + " " + constant.name + " = " +
                                  ValueText(constant.value) + ";");
}

std::string EnumeratorLine(const Enumerator& enumerator) {
    return Line(enumerator, enumerator.name + " = " + std::to_string(enumerator.value) + ",");
}

std::string Body(const Definition& definition) {
    std::string body;
    for (const Field& field : definition.fields)
        body += FieldLine(field);
    for (const Method& method : definition.methods)
        body += MethodLine(method);
    for (const Enumerator& enumerator : definition.enumerators)
        body += EnumeratorLine(enumerator);
    for (const Constant& constant : definition.constants)
        body += ConstantLine(constant);
    return body;
}

}  // namespace

std::string TypeSignature(const Type& type) {
    std::string text;
    for (const Annotation& annotation : type.annotations) {
        text += AnnotationText(annotation) + " ";
    }
    const std::string name = type.definition == nullptr ? std::string(BuiltinName(type.builtin))
                                                        : type.definition->QualifiedName();
    return text + (type.isList ? "List<" + name + ">" : name) + (type.isArray ? "[]" : "");
}

std::string MethodSignature(const Method& method) {
    std::string arguments;
    for (const Argument& argument : method.arguments) {
        arguments += (arguments.empty() ? "" : ", ") + ArgumentText(argument);
    }
    return TypeSignature(method.returnType) + " " + method.name + "(" + arguments + ")";
}

std::string ValueText(const Value& value) {
    if (value.enumeration != nullptr) return value.enumeration->QualifiedName() + "." + value.text;
    switch (value.kind) {
        case Value::Kind::kBool:
            return value.number != 0 ? "true" : "false";
        case Value::Kind::kInt:
        case Value::Kind::kLong:
            return std::to_string(value.number);
        case Value::Kind::kChar:
            return "'" + value.text + "'";
        case Value::Kind::kFloat:
            return value.text;
        case Value::Kind::kString:
            return "\"" + value.text + "\"";
        case Value::Kind::kList:
            break;
    }
    return ListText(value);
}

std::string DumpDefinition(const Definition& definition) {
    std::string text = definition.remark.empty() ? "" : definition.remark + "\n";
    for (const Annotation& annotation : definition.annotations) {
        text += AnnotationText(annotation) + "\n";
    }
    text += definition.oneway ? "oneway " : "";
    text += std::string(KindWord(definition.kind)) + " " + definition.name + " {\n";
    return text + Body(definition) + "}\n";
}

std::string DumpApi(const Document& document) {
    std::string text;
    for (const std::string& comment : document.leadingComments)
        text += comment + "\n";
    text += "package " + document.package + ";\n";
    return text + DumpDefinition(*document.definition);
}

}  // namespace zarvo::host::aidl
