#include "host/aidl/TypeParser.h"

#include <string>
#include <utility>

namespace zarvo::host::aidl {

namespace {

constexpr size_t kMaxAnnotations = 16;

}  // namespace

std::vector<Annotation> TypeParser::ParseAnnotations() {
    std::vector<Annotation> annotations;
    while (mTokens.Peek().Is("@")) {
        if (annotations.size() == kMaxAnnotations) mTokens.FailHere("too many annotations");
        annotations.push_back(ParseAnnotation());
    }
    return annotations;
}

Annotation TypeParser::ParseAnnotation() {
    Annotation annotation;
    annotation.position = mTokens.Take().position;
    annotation.name = mTokens.ExpectIdentifier("an annotation's name");
    if (!mTokens.Accept("(")) return annotation;
    while (!mTokens.Peek().Is(")") && !mTokens.AtEnd()) {
        if (annotation.parameters.size() == kMaxAnnotations)
            mTokens.FailHere("too many parameters");
        AnnotationParameter parameter{mTokens.ExpectIdentifier("a parameter's name"), {}};
        mTokens.Expect("=");
        const Token literal = mTokens.Take();
        const bool quoted = literal.kind == Token::Kind::kString;
        if (!quoted && !literal.Is("true") && !literal.Is("false")) {
            mTokens.Fail(literal.position, "expected a string, true or false");
        }
        parameter.literal = quoted ? "\"" + std::string(literal.text) + "\"" : literal.text;
        annotation.parameters.push_back(std::move(parameter));
        if (!mTokens.Accept(",")) break;
    }
    mTokens.Expect(")");
    return annotation;
}

Type TypeParser::ParseType(std::vector<Annotation> annotations) {
    Type type;
    type.annotations = std::move(annotations);
    type.position = mTokens.Peek().position;
    type.name = mTokens.ExpectQualifiedName("a type");
    if (mTokens.Peek().Is("<")) ParseList(type);
    while (mTokens.Peek().Is("[")) {
        ParseArraySuffix(type);
    }
    return type;
}

void TypeParser::ParseList(Type& type) {
    if (type.name != "List") {
        return mTokens.FailHere("generic type '" + type.name +
                                "' is not supported, only List<T> is");
    }
    mTokens.Take();
    type.isList = true;
    type.position = mTokens.Peek().position;
    type.name = mTokens.ExpectQualifiedName("the type of the elements");
    if (mTokens.Peek().Is("<") || mTokens.Peek().Is("[")) {
        return mTokens.FailHere("lists of lists or arrays are not supported");
    }
    mTokens.Expect(">");
}

void TypeParser::ParseArraySuffix(Type& type) {
    if (type.IsVector()) return mTokens.FailHere("arrays of arrays or lists are not supported");
    mTokens.Take();
    if (!mTokens.Peek().Is("]") && !mTokens.AtEnd()) {
        return mTokens.FailHere("arrays of fixed size are not supported");
    }
    mTokens.Expect("]");
    type.isArray = true;
}

}  // namespace zarvo::host::aidl
