#pragma once

#include <string_view>

#include "host/aidl/Ast.h"

namespace zarvo::host::aidl {

/** The built-in type of that name, or kNone. */
Builtin FindBuiltin(std::string_view name);
/** The name of a built-in type in AIDL. */
std::string_view BuiltinName(Builtin builtin);
/** Whether the name is one of AIDL's own types that this compiler does not support. */
bool IsUnsupportedBuiltin(std::string_view name);

/** Whether the word is a keyword of AIDL. */
bool IsAidlWord(std::string_view word);
/** Whether the word may not be a name: a keyword of C++ or AIDL, or kept for generated code. */
bool IsReservedWord(std::string_view word);
/**
 * Whether the name is taken by the class that a definition becomes, its bases included, so that no
 * member of the definition may have it.
 */
bool IsTakenMember(const Definition& definition, std::string_view name);

}  // namespace zarvo::host::aidl
