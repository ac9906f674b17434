#include "host/aidl/ValueChecker.h"

#include <string>
#include <utility>

#include "host/aidl/Builtins.h"
#include "host/aidl/Evaluator.h"

namespace zarvo::host::aidl {

namespace {

/** How long a chain of constants, each defined by the next, may be. */
constexpr size_t kMaxDepth = 64;

int64_t MaxOf(Builtin backing) {
    return backing == Builtin::kByte ? INT8_MAX : backing == Builtin::kInt ? INT32_MAX : INT64_MAX;
}

Type BackingType(const Definition& definition) {
    Type type;
    type.builtin = definition.backing;
    return type;
}

}  // namespace

void ValueChecker::Check(const Document& document) {
    Definition& definition = *document.definition;
    for (Constant& constant : definition.constants)
        EvaluateConstant(document, constant);
    if (definition.IsEnum()) EvaluateEnum(document);
    for (Field& field : definition.fields)
        EvaluateField(document, field);
}

void ValueChecker::EvaluateConstant(const Document& document, Constant& constant) {
    if (constant.state == Constant::State::kDone) return;
    constant.state = Constant::State::kActive;
    std::optional<Value> value = Evaluate(document, constant.expression, constant.type);
    if (value) constant.value = std::move(*value);
    constant.state = Constant::State::kDone;
}

void ValueChecker::EvaluateEnum(const Document& document) {
    Definition& definition = *document.definition;
    if (definition.evaluating || definition.enumerators.back().evaluated) return;
    definition.evaluating = true;
    int64_t next = 0;
    bool overflow = false;
    for (Enumerator& enumerator : definition.enumerators) {
        if (enumerator.expression) {
            const std::optional<Value> value =
                    Evaluate(document, *enumerator.expression, BackingType(definition));
            next = value ? value->number : next;
        } else if (overflow) {
            mDiagnostics.Error(document.path, enumerator.position, "value is out of range");
        }
        enumerator.value = next;
        enumerator.evaluated = true;
        overflow = next == MaxOf(definition.backing);
        next = overflow ? next : next + 1;
    }
    definition.evaluating = false;
}

void ValueChecker::EvaluateField(const Document& document, Field& field) {
    if (field.initializer) field.value = Evaluate(document, *field.initializer, field.type);
}

std::optional<Value> ValueChecker::Evaluate(const Document& document, const Expression& expression,
                                            const Type& type) {
    if (mDepth == kMaxDepth) {
        mDiagnostics.Error(document.path, expression.position,
                           "constants refer to each other in too long a chain");
        return std::nullopt;
    }
    ++mDepth;
    Evaluator evaluator(document.path, mDiagnostics);
    std::optional<Value> value =
            evaluator.Evaluate(expression, [&](std::string_view name, Position position) {
                return Lookup(document, name, position);
            });
    if (value) value = evaluator.Convert(*value, type, expression.position);
    --mDepth;
    return value;
}

const Value* ValueChecker::Lookup(const Document& document, std::string_view name,
                                  Position position) {
    const size_t dot = name.rfind('.');
    const bool own = dot == std::string_view::npos;
    const Document* owner = own ? &document : FindOwner(document, name.substr(0, dot));
    const std::string_view member = own ? name : name.substr(dot + 1);
    const size_t errors = mDiagnostics.Count();
    const Value* value = nullptr;
    if (owner != nullptr) {
        value = owner->definition->IsEnum() ? FindEnumerator(*owner, member)
                                            : FindConstant(*owner, member);
    }
    if (value == nullptr && mDiagnostics.Count() == errors) {
        mDiagnostics.Error(document.path, position,
                           "no constant '" + std::string(name) + "' that is defined before this");
    }
    return value;
}

const Value* ValueChecker::FindConstant(const Document& owner, std::string_view name) {
    for (Constant& constant : owner.definition->constants) {
        if (constant.name != name) continue;
        if (constant.state == Constant::State::kActive) return nullptr;
        EvaluateConstant(owner, constant);
        return &constant.value;
    }
    return nullptr;
}

const Value* ValueChecker::FindEnumerator(const Document& owner, std::string_view name) {
    const Definition& definition = *owner.definition;
    EvaluateEnum(owner);
    for (const Enumerator& enumerator : definition.enumerators) {
        if (enumerator.name != name || !enumerator.evaluated) continue;
        const bool isLong = definition.backing == Builtin::kLong;
        mEnumerator = {isLong ? Value::Kind::kLong : Value::Kind::kInt,
                       enumerator.value,
                       enumerator.name,
                       &definition,
                       {}};
        return &mEnumerator;
    }
    return nullptr;
}

const Document* ValueChecker::FindOwner(const Document& document, std::string_view type) const {
    const Definition* definition = mProgram.Find(document, type);
    return definition == nullptr ? nullptr : definition->document;
}

}  // namespace zarvo::host::aidl
