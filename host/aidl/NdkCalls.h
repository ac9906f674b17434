#pragma once

#include <string>
#include <vector>

#include "host/aidl/Ast.h"

namespace zarvo::host::aidl {

// The marshalling half of an interface's source.

/** Whether a call waits for no reply. The meta methods of a oneway interface have one. */
bool NdkIsOneway(const Definition& definition, const Method& method);

/** The arguments of a call that passes a method's parameters on. */
std::string NdkArguments(const Method& method);

/**
 * File-local functions that read a request, call the implementation and write the reply; the
 * last one, _aidl_onTransact, chooses by code.
 */
std::string PrintDispatch(const Definition& definition, const std::vector<Method>& meta);

/** The proxy's definition of a method. */
std::string PrintProxyMethod(const Definition& definition, const Method& method);

/** The proxy's definition of a meta method: it remembers the first answer. */
std::string PrintCachedProxyMethod(const Definition& definition, const Method& method);

}  // namespace zarvo::host::aidl
