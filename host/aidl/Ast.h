#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/aidl/Diagnostics.h"

namespace zarvo::host::aidl {

struct Definition;
struct Document;

/** A parameter of an annotation, such as type="byte"; the literal with its quotes. */
struct AnnotationParameter {
    std::string name;
    std::string literal;
};

struct Annotation {
    std::string name;
    std::vector<AnnotationParameter> parameters;
    Position position;
};

/** One step of an expression in postfix order. */
struct ExpressionStep {
    enum class Kind { kInteger, kFloat, kString, kChar, kBool, kReference, kUnary, kBinary, kList };

    Kind kind;
    /** The literal, the name or the operator. */
    std::string text;
    /** kList: how many values it takes. */
    size_t count = 0;
    Position position;
};

/**
 * A constant expression, in postfix order: flat, so that neither its length nor its destruction
 * costs stack.
 */
struct Expression {
    std::vector<ExpressionStep> steps;
    Position position;
};

/** What an expression amounts to. */
struct Value {
    enum class Kind { kBool, kInt, kLong, kChar, kFloat, kString, kList };

    Kind kind = Kind::kInt;
    /** kBool, kInt, kLong. */
    int64_t number = 0;
    /** kString, kChar; of kFloat the literal with its sign; of an enumerator its name. */
    std::string text;
    /** Set when the value is an enumerator, named and not computed with. */
    const Definition* enumeration = nullptr;
    std::vector<Value> elements;
};

enum class Builtin { kNone, kVoid, kBoolean, kByte, kChar, kInt, kLong, kFloat, kDouble, kString };

/** A type as used by a member. List<T> is written with T's name and isList. */
struct Type {
    std::string name;
    bool isArray = false;
    bool isList = false;
    std::vector<Annotation> annotations;
    Position position;

    /** After checking exactly one is set: a built-in type, or one that a file defines. */
    Builtin builtin = Builtin::kNone;
    const Definition* definition = nullptr;

    bool IsVector() const { return isArray || isList; }
    bool IsVoid() const { return builtin == Builtin::kVoid; }
    bool IsNullable() const;
};

/** What every named thing has. */
struct Named {
    std::string name;
    Position position;
    /** What an API dump keeps of the comment: a block comment with @hide or @deprecated. */
    std::string remark;
};

struct Constant : Named {
    enum class State { kUnseen, kActive, kDone };

    Type type;
    Expression expression;
    State state = State::kUnseen;
    /** Set by checking. */
    Value value;
};

/** A field of a parcelable or an alternative of a union. */
struct Field : Named {
    Type type;
    std::optional<Expression> initializer;
    /** Set by checking if there is an initializer. */
    std::optional<Value> value;
};

struct Enumerator : Named {
    std::optional<Expression> expression;
    bool evaluated = false;
    /** Set by checking. */
    int64_t value = 0;
};

enum class Direction { kNone, kIn, kOut, kInOut };

struct Argument : Named {
    Type type;
    Direction direction = Direction::kNone;

    bool IsIn() const { return direction != Direction::kOut; }
    bool IsOut() const { return direction == Direction::kOut || direction == Direction::kInOut; }
};

struct Method : Named {
    /** Written on the method; an interface may be oneway as a whole, too. */
    bool oneway = false;
    Type returnType;
    std::vector<Argument> arguments;
    /** The number the source gives, if it gives numbers. */
    std::optional<uint32_t> givenId;
    /** Set by checking: the transaction's code less that of the first call. */
    uint32_t id = 0;
};

/** A type that a file defines. Only the members of its kind are filled. */
struct Definition : Named {
    enum class Kind { kInterface, kParcelable, kUnion, kEnum };

    Kind kind = Kind::kParcelable;
    std::string package;
    /** The file that owns this. */
    const Document* document = nullptr;
    std::vector<Annotation> annotations;
    /** Of an interface. */
    bool oneway = false;
    std::vector<Constant> constants;
    std::vector<Field> fields;
    std::vector<Method> methods;
    std::vector<Enumerator> enumerators;
    /** Of an enum, set by checking: kByte, kInt or kLong. */
    Builtin backing = Builtin::kByte;
    /** Of an enum: its values are being computed. */
    bool evaluating = false;

    std::string QualifiedName() const { return package + "." + name; }
    bool IsInterface() const { return kind == Kind::kInterface; }
    bool IsEnum() const { return kind == Kind::kEnum; }
    bool IsOneway(const Method& method) const { return oneway || method.oneway; }
    const Annotation* FindAnnotation(std::string_view annotation) const;
    bool IsVintfStable() const { return FindAnnotation("VintfStability") != nullptr; }
};

struct Import {
    std::string name;
    Position position;
};

/** One file. */
struct Document {
    std::string path;
    std::string package;
    Position packagePosition;
    std::vector<Import> imports;
    /** Block comments in front of the package line, as they stand. */
    std::vector<std::string> leadingComments;
    std::unique_ptr<Definition> definition;
};

inline const Annotation* FindAnnotation(const std::vector<Annotation>& annotations,
                                        std::string_view name) {
    for (const Annotation& annotation : annotations) {
        if (annotation.name == name) return &annotation;
    }
    return nullptr;
}

inline bool Type::IsNullable() const {
    return aidl::FindAnnotation(annotations, "nullable") != nullptr;
}

inline const Annotation* Definition::FindAnnotation(std::string_view annotation) const {
    return aidl::FindAnnotation(annotations, annotation);
}

}  // namespace zarvo::host::aidl
