#pragma once

#include <string>

#include "host/aidl/Ast.h"

namespace zarvo::host::aidl {

/**
 * The text of a checked file's API: comments in front of the package line as they are, then the
 * type without imports and comments, its type names qualified, its expressions computed, fields
 * or methods before constants. Reading the text and dumping it again gives the same text.
 */
std::string DumpApi(const Document& document);
/** The part of DumpApi's text that follows the package line. */
std::string DumpDefinition(const Definition& definition);

/** Type, name and arguments of a method as in a dump, without oneway and its number. */
std::string MethodSignature(const Method& method);
/** A type as in a dump, annotations first. */
std::string TypeSignature(const Type& type);
/** A constant's or field's value as in a dump. */
std::string ValueText(const Value& value);

}  // namespace zarvo::host::aidl
