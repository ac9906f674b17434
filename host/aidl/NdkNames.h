#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/aidl/Ast.h"

namespace zarvo::host::aidl {

/** What the command line says about the generated code. */
struct NdkOptions {
    /** 0: interfaces tell no version. */
    uint32_t version = 0;
    /** Empty: interfaces tell no hash. */
    std::string hash;
};

// How things are called in the C++ of the NDK backend.

/** aidl::a::b */
std::string NdkNamespace(const Definition& definition);
/** ::aidl::a::b::Type */
std::string NdkClass(const Definition& definition);
/** The name of the stub without "Bn": an I in front of another capital is dropped. */
std::string NdkBaseName(const Definition& definition);
/** Where a header lies below the header folder: aidl/a/b/<name>.h */
std::string NdkHeaderPath(const Definition& definition, const std::string& name);
/** Where the source lies below the source folder: a/b/<type>.cpp */
std::string NdkSourcePath(const Definition& definition);

/** The C++ type of a value. */
std::string NdkType(const Type& type);
/** The C++ type of one element, or of the value itself if the type is no array. */
std::string NdkElementType(const Type& type);
/** What tells the functions for nullable values from the others in their names: "Nullable" or "".
 */
std::string_view NdkNullable(const Type& type);
/** The C++ type by which an argument is passed. */
std::string NdkParameterType(const Argument& argument);
/** in_name, out_name or inout_name */
std::string NdkParameterName(const Argument& argument);
/** The parameters of a method, its result's pointer last: "int32_t in_a, int64_t* _aidl_return". */
std::string NdkParameters(const Method& method);
/** A value as initializer for something of that type. */
std::string NdkValue(const Value& value, const Type& type);
/** The initializer of a field with a default value of its own or of its type; may be empty. */
std::string NdkInitializer(const Field& field);
/** The integer as a C++ literal of the (integer) type. */
std::string NdkInteger(int64_t number, Builtin builtin);

}  // namespace zarvo::host::aidl
