#pragma once

#include "host/aidl/Diagnostics.h"
#include "host/aidl/Program.h"

namespace zarvo::host::aidl {

enum class ApiCheckLevel { kEqual, kCompatible };

/**
 * Compares two checked versions of an API.
 *
 * kEqual: the same types, whose dumps differ at most in front of the package line.
 * kCompatible: what a reader of the older version relies on is still there. Types, methods (with
 * their numbers and argument types), constants (with their values), enumerators, fields and
 * alternatives of the older version stay, fields and alternatives in their order and in front of
 * all others; new ones may be added.
 *
 * False after reporting every difference that the level forbids, at its place in the newer
 * version where there is one.
 */
bool CheckApi(const Program& older, const Program& newer, ApiCheckLevel level,
              Diagnostics& diagnostics);

}  // namespace zarvo::host::aidl
