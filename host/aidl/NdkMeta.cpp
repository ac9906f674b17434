#include "host/aidl/NdkMeta.h"

#include <cstdint>
#include <string>
#include <utility>

namespace zarvo::host::aidl {

namespace {

Method MetaMethod(std::string name, Builtin result, uint32_t id) {
    Method method;
    method.name = std::move(name);
    method.returnType.builtin = result;
    method.id = id;
    return method;
}

}  // namespace

std::vector<Method> MetaMethods(const NdkOptions& options) {
    std::vector<Method> methods;
    if (options.version != 0) {
        methods.push_back(MetaMethod("getInterfaceVersion", Builtin::kInt, 16777214));
    }
    if (!options.hash.empty()) {
        methods.push_back(MetaMethod("getInterfaceHash", Builtin::kString, 16777213));
    }
    return methods;
}

}  // namespace zarvo::host::aidl
