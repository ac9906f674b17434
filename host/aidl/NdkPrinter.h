#pragma once

#include <string>
#include <vector>

#include "host/aidl/Ast.h"
#include "host/aidl/NdkNames.h"

namespace zarvo::host::aidl {

/** The C++ of one checked type. Paths are relative to the header and the source folder. */
struct NdkCode {
    struct File {
        std::string path;
        std::string text;
    };
    /** <Type>.h, Bn….h and Bp….h; the latter two of a type that is no interface are an #error. */
    std::vector<File> headers;
    File source;
};

/**
 * Prints a type for the NDK backend. Code written against the classes of the platform's own
 * compiler compiles against these and works on the same bytes. Differences within that frame:
 * results of methods are zero before the implementation sets them, and classes have default
 * visibility.
 */
NdkCode PrintNdk(const Definition& definition, const NdkOptions& options);

// The parts of PrintNdk: the declarations and definitions that go between the namespace's braces.

std::string PrintInterfaceDeclarations(const Definition& definition, const NdkOptions& options);
std::string PrintStubDeclarations(const Definition& definition, const NdkOptions& options);
std::string PrintProxyDeclarations(const Definition& definition, const NdkOptions& options);
std::string PrintInterfaceDefinitions(const Definition& definition, const NdkOptions& options);
std::string PrintParcelableDeclarations(const Definition& definition);
std::string PrintParcelableDefinitions(const Definition& definition);
std::string PrintUnionDeclarations(const Definition& definition);
std::string PrintUnionDefinitions(const Definition& definition);
/** A union's tags, as the enumerators that they become. */
std::vector<Enumerator> UnionTags(const Definition& definition);
std::string PrintEnumDeclarations(const Definition& definition);
/** Constants of an interface, a parcelable or a union, inside and outside of their class. */
std::string PrintConstantDeclarations(const Definition& definition);
std::string PrintConstantDefinitions(const Definition& definition);
/** toString for an enum class, and in namespace ndk the list of its values. */
std::string PrintEnumToString(const std::string& name, Builtin backing,
                              const std::vector<Enumerator>& enumerators);
std::string PrintEnumValues(const std::string& qualifiedName,
                            const std::vector<Enumerator>& enumerators);

}  // namespace zarvo::host::aidl
