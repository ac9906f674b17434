#pragma once

#include <vector>

#include "host/aidl/Ast.h"
#include "host/aidl/NdkNames.h"

namespace zarvo::host::aidl {

/** The methods that every interface of a version or a hash has beside its own. */
std::vector<Method> MetaMethods(const NdkOptions& options);

}  // namespace zarvo::host::aidl
