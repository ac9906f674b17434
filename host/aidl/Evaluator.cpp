#include "host/aidl/Evaluator.h"

#include <charconv>
#include <limits>
#include <system_error>
#include <utility>
#include <vector>

#include "host/aidl/Arithmetic.h"

namespace zarvo::host::aidl {

namespace {

using Kind = Value::Kind;
using StepKind = ExpressionStep::Kind;

/** The values that the steps so far have left to be used. */
class Stack {
  public:
    void Push(Value value) { mValues.push_back(std::move(value)); }
    Value Pop() {
        Value value = std::move(mValues.back());
        mValues.pop_back();
        return value;
    }
    Value PopList(size_t count) {
        Value list{Kind::kList, 0, {}, nullptr, {}};
        const auto first = mValues.end() - static_cast<std::ptrdiff_t>(count);
        list.elements.assign(std::make_move_iterator(first),
                             std::make_move_iterator(mValues.end()));
        mValues.erase(first, mValues.end());
        return list;
    }

  private:
    std::vector<Value> mValues;
};

ValueOrError Resolve(const ExpressionStep& step, const Evaluator::Lookup& lookup) {
    const Value* value = lookup(step.text, step.position);
    if (value == nullptr) return std::string();
    return *value;
}

ValueOrError Apply(const ExpressionStep& step, Stack& stack) {
    const Value right = stack.Pop();
    if (step.kind == StepKind::kUnary) return ApplyUnary(step.text, right);
    const Value left = stack.Pop();
    return ApplyBinary(step.text, left, right);
}

ValueOrError Run(const ExpressionStep& step, Stack& stack, const Evaluator::Lookup& lookup) {
    switch (step.kind) {
        case StepKind::kInteger:
            return IntegerLiteral(step.text);
        case StepKind::kFloat:
            return FloatLiteral(step.text);
        case StepKind::kString:
            return Value{Kind::kString, 0, step.text, nullptr, {}};
        case StepKind::kChar:
            return Value{Kind::kChar, 0, step.text, nullptr, {}};
        case StepKind::kBool:
            return Value{Kind::kBool, step.text == "true" ? 1 : 0, {}, nullptr, {}};
        case StepKind::kReference:
            return Resolve(step, lookup);
        case StepKind::kList:
            return stack.PopList(step.count);
        case StepKind::kUnary:
        case StepKind::kBinary:
            break;
    }
    return Apply(step, stack);
}

template <typename T>
bool Within(int64_t number) {
    return number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max();
}

bool FitsFloat(const std::string& text) {
    float number = 0;
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

}  // namespace

std::optional<Value> Evaluator::Evaluate(const Expression& expression, const Lookup& lookup) {
    Stack stack;
    for (const ExpressionStep& step : expression.steps) {
        ValueOrError result = Run(step, stack, lookup);
        if (const std::string* error = std::get_if<std::string>(&result)) {
            // A failed lookup has spoken for itself.
            if (!error->empty()) Fail(step.position, *error);
            return std::nullopt;
        }
        stack.Push(std::move(*std::get_if<Value>(&result)));
    }
    return stack.Pop();
}

std::optional<Value> Evaluator::Convert(const Value& value, const Type& type, Position position) {
    if (!type.IsVector()) return ConvertElement(value, type, position);
    if (value.kind != Kind::kList) return Fail(position, "an array's value is a list in braces");
    return ConvertElements(value, type, position);
}

std::optional<Value> Evaluator::ConvertElements(const Value& value, const Type& type,
                                                Position position) {
    Value list{Kind::kList, 0, {}, nullptr, {}};
    for (const Value& element : value.elements) {
        std::optional<Value> converted = ConvertElement(element, type, position);
        if (!converted) return std::nullopt;
        list.elements.push_back(std::move(*converted));
    }
    return list;
}

std::optional<Value> Evaluator::ConvertElement(const Value& value, const Type& type,
                                               Position position) {
    if (type.definition != nullptr) return ConvertEnumerator(value, type, position);
    switch (type.builtin) {
        case Builtin::kByte:
        case Builtin::kInt:
        case Builtin::kLong:
            return ConvertInteger(value, type.builtin, position);
        case Builtin::kBoolean:
            if (value.kind == Kind::kBool) return value;
            return Fail(position, "expected true or false");
        case Builtin::kChar:
            if (value.kind == Kind::kChar && value.text.size() == 1) return value;
            return Fail(position, "expected one character in single quotes");
        case Builtin::kFloat:
        case Builtin::kDouble:
            return ConvertFloat(value, type.builtin, position);
        case Builtin::kString:
            if (value.kind == Kind::kString) return value;
            return Fail(position, "expected a string");
        case Builtin::kNone:
        case Builtin::kVoid:
            break;
    }
    return Fail(position, "type '" + type.name + "' takes no value here");
}

std::optional<Value> Evaluator::ConvertEnumerator(const Value& value, const Type& type,
                                                  Position position) {
    if (!type.definition->IsEnum()) {
        return Fail(position, "type '" + type.name + "' takes no value here");
    }
    if (value.enumeration == type.definition) return value;
    return Fail(position, "expected an enumerator of " + type.definition->QualifiedName());
}

std::optional<Value> Evaluator::ConvertInteger(const Value& value, Builtin builtin,
                                               Position position) {
    if (value.kind != Kind::kInt && value.kind != Kind::kLong) {
        return Fail(position, "expected an integer");
    }
    const bool fits =
            builtin == Builtin::kLong || (builtin == Builtin::kInt ? Within<int32_t>(value.number)
                                                                   : Within<int8_t>(value.number));
    if (!fits) {
        return Fail(position, "value " + std::to_string(value.number) + " is out of range");
    }
    // An enumerator's name is left behind: this is a plain number.
    const Kind kind = builtin == Builtin::kLong ? Kind::kLong : Kind::kInt;
    return Value{kind, value.number, {}, nullptr, {}};
}

std::optional<Value> Evaluator::ConvertFloat(const Value& value, Builtin builtin,
                                             Position position) {
    if (value.kind != Kind::kFloat) return Fail(position, "expected a floating-point literal");
    if (builtin == Builtin::kFloat && !FitsFloat(value.text)) {
        return Fail(position, "value does not fit a float");
    }
    return value;
}

std::nullopt_t Evaluator::Fail(Position position, std::string_view text) {
    mDiagnostics.Error(mPath, position, text);
    return std::nullopt;
}

}  // namespace zarvo::host::aidl
