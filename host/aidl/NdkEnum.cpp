#include <set>
#include <string>
#include <string_view>

#include "host/aidl/NdkPrinter.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kEnum = R"(enum class ${name} : ${backing} {
${enumerators}};

${toString})";

constexpr std::string_view kToString =
        R"([[nodiscard]] static inline std::string toString(${name} val);
static inline std::string toString(${name} val) {
    switch (val) {
${cases}    }
    return std::to_string(static_cast<${backing}>(val));
}
)";

constexpr std::string_view kValues = R"(namespace ndk {
namespace internal {
template <>
constexpr inline std::array<${name}, ${count}> enum_values<${name}> = {
${values}};
}  // namespace internal
}  // namespace ndk
)";

std::string BackingName(Builtin backing) {
    Type type;
    type.builtin = backing;
    return NdkType(type);
}

std::string EnumeratorLines(const Definition& definition) {
    std::string lines;
    for (const Enumerator& enumerator : definition.enumerators) {
        lines += "    " + enumerator.name + " = " +
                 NdkInteger(enumerator.value, definition.backing) + ",\n";
    }
    return lines;
}

}  // namespace

std::string PrintEnumToString(const std::string& name, Builtin backing,
                              const std::vector<Enumerator>& enumerators) {
    std::string cases;
    std::set<int64_t> seen;
    for (const Enumerator& enumerator : enumerators) {
        // Of several names of one value the first is told.
        if (!seen.insert(enumerator.value).second) continue;
        cases += "        case " + name + "::" + enumerator.name + ":\n            return \"" +
                 enumerator.name + "\";\n";
    }
    return Fill(kToString, {{"name", name}, {"cases", cases}, {"backing", BackingName(backing)}});
}

std::string PrintEnumValues(const std::string& qualifiedName,
                            const std::vector<Enumerator>& enumerators) {
    std::string values;
    for (const Enumerator& enumerator : enumerators) {
        values += "        " + qualifiedName + "::" + enumerator.name + ",\n";
    }
    return Fill(kValues, {{"name", qualifiedName},
                          {"count", std::to_string(enumerators.size())},
                          {"values", values}});
}

std::string PrintEnumDeclarations(const Definition& definition) {
    return Fill(kEnum, {{"name", definition.name},
                        {"backing", BackingName(definition.backing)},
                        {"enumerators", EnumeratorLines(definition)},
                        {"toString", PrintEnumToString(definition.name, definition.backing,
                                                       definition.enumerators)}});
}

}  // namespace zarvo::host::aidl
