#include "host/aidl/NdkPrinter.h"

#include <map>
#include <set>
#include <string_view>

#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kBanner = "// Made from ${type} by aidl-ndk. Change that, not this.\n";

constexpr std::string_view kHeader = R"(${banner}#pragma once

${includes}
#pragma GCC visibility push(default)
namespace ${namespace} {

${declarations}
}  // namespace ${namespace}
${more}#pragma GCC visibility pop
)";

constexpr std::string_view kSource = R"(${banner}${includes}
namespace ${namespace} {

${definitions}
}  // namespace ${namespace}
)";

constexpr std::string_view kForward = R"(namespace ${namespace} {
class ${class};
}
)";

constexpr std::string_view kEnumIncludes = R"(#include <android/binder_enums.h>

#include <array>
#include <cstdint>
#include <string>
)";

constexpr std::string_view kClassIncludes = R"(#include <android/binder_interface_utils.h>
#include <android/binder_parcelable_utils.h>
#include <android/binder_to_string.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <android/binder_enums.h>
#ifdef BINDER_STABILITY_SUPPORT
#include <android/binder_stability.h>
#endif
)";

std::string Banner(const Definition& definition) {
    return Fill(kBanner, {{"type", definition.QualifiedName()}});
}

void AddUsed(const Type& type, const Definition& user,
             std::map<std::string, const Definition*>& used) {
    if (type.definition == nullptr || type.definition == &user) return;
    used.emplace(type.definition->QualifiedName(), type.definition);
}

/** The other types that a definition names, in the order of their names. */
std::map<std::string, const Definition*> UsedTypes(const Definition& definition) {
    std::map<std::string, const Definition*> used;
    for (const Field& field : definition.fields)
        AddUsed(field.type, definition, used);
    for (const Method& method : definition.methods) {
        AddUsed(method.returnType, definition, used);
        for (const Argument& argument : method.arguments)
            AddUsed(argument.type, definition, used);
    }
    return used;
}

/**
 * The headers of the types used. Classes are declared in front of them, because two interfaces
 * may use each other, and then one header is read with the other half done.
 */
std::string UsedIncludes(const Definition& definition) {
    std::string declarations;
    std::string includes;
    for (const auto& [name, used] : UsedTypes(definition)) {
        if (!used->IsEnum()) {
            declarations +=
                    Fill(kForward, {{"namespace", NdkNamespace(*used)}, {"class", used->name}});
        }
        includes += "#include <" + NdkHeaderPath(*used, used->name) + ">\n";
    }
    return declarations + includes;
}

std::string Includes(const Definition& definition) {
    if (definition.IsEnum()) return std::string(kEnumIncludes);
    return std::string(kClassIncludes) + UsedIncludes(definition);
}

std::string Header(const Definition& definition, const std::string& includes,
                   const std::string& declarations, const std::string& more) {
    return Fill(kHeader, {{"banner", Banner(definition)},
                          {"includes", includes},
                          {"namespace", NdkNamespace(definition)},
                          {"declarations", declarations},
                          {"more", more}});
}

std::string Declarations(const Definition& definition, const NdkOptions& options) {
    switch (definition.kind) {
        case Definition::Kind::kInterface:
            return PrintInterfaceDeclarations(definition, options);
        case Definition::Kind::kParcelable:
            return PrintParcelableDeclarations(definition);
        case Definition::Kind::kUnion:
            return PrintUnionDeclarations(definition);
        case Definition::Kind::kEnum:
            break;
    }
    return PrintEnumDeclarations(definition);
}

/** What a header holds outside of the type's own namespace. */
std::string MoreDeclarations(const Definition& definition) {
    if (definition.IsEnum()) return PrintEnumValues(NdkClass(definition), definition.enumerators);
    if (definition.kind != Definition::Kind::kUnion) return {};
    return PrintEnumValues(NdkClass(definition) + "::Tag", UnionTags(definition));
}

std::string Definitions(const Definition& definition, const NdkOptions& options) {
    switch (definition.kind) {
        case Definition::Kind::kInterface:
            return PrintInterfaceDefinitions(definition, options);
        case Definition::Kind::kParcelable:
            return PrintParcelableDefinitions(definition);
        case Definition::Kind::kUnion:
            return PrintUnionDefinitions(definition);
        case Definition::Kind::kEnum:
            break;
    }
    return {};
}

std::string Source(const Definition& definition, const NdkOptions& options) {
    std::string includes = "#include <" + NdkHeaderPath(definition, definition.name) + ">\n";
    if (definition.IsInterface()) {
        for (const char* prefix : {"Bn", "Bp"}) {
            const std::string name = prefix + NdkBaseName(definition);
            includes += "#include <" + NdkHeaderPath(definition, name) + ">\n";
        }
    }
    includes += "\n#include <android/binder_parcel_utils.h>\n\n#include <cassert>\n";
    return Fill(kSource, {{"banner", Banner(definition)},
                          {"includes", includes},
                          {"namespace", NdkNamespace(definition)},
                          {"definitions", Definitions(definition, options)}});
}

/** The header of a stub or proxy class. */
NdkCode::File ClassHeader(const Definition& definition, const std::string& prefix,
                          const NdkOptions& options) {
    const std::string name = prefix + NdkBaseName(definition);
    const std::string path = NdkHeaderPath(definition, name);
    if (!definition.IsInterface()) {
        return {path, Banner(definition) + "#error \"" + definition.QualifiedName() +
                              " is no interface: there is no class " + name + "\"\n"};
    }
    const std::string includes = "#include <" + NdkHeaderPath(definition, definition.name) +
                                 ">\n\n#include <android/binder_ibinder.h>\n\n#include <mutex>\n";
    const std::string declarations = prefix == "Bn" ? PrintStubDeclarations(definition, options)
                                                    : PrintProxyDeclarations(definition, options);
    return {path, Header(definition, includes, declarations, {})};
}

}  // namespace

NdkCode PrintNdk(const Definition& definition, const NdkOptions& options) {
    NdkCode code;
    code.headers.push_back(
            {NdkHeaderPath(definition, definition.name),
             Header(definition, Includes(definition), Declarations(definition, options),
                    MoreDeclarations(definition))});
    code.headers.push_back(ClassHeader(definition, "Bn", options));
    code.headers.push_back(ClassHeader(definition, "Bp", options));
    code.source = {NdkSourcePath(definition), Source(definition, options)};
    return code;
}

}  // namespace zarvo::host::aidl
