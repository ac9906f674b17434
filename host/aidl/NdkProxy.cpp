#include <string>
#include <string_view>

#include "host/aidl/NdkCalls.h"
#include "host/aidl/NdkNames.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kMethod =
        R"(::ndk::ScopedAStatus Bp${base}::${method}(${parameters}) {
${before}    ::ndk::ScopedAParcel _aidl_in;
    ::ndk::ScopedAParcel _aidl_out;
    const ::ndk::SpAIBinder _aidl_binder = asBinder();
    binder_status_t _aidl_ret = AIBinder_prepareTransaction(_aidl_binder.get(), _aidl_in.getR());
    if (_aidl_ret != STATUS_OK) return ::ndk::ScopedAStatus::fromStatus(_aidl_ret);
${write}    _aidl_ret = AIBinder_transact(_aidl_binder.get(), FIRST_CALL_TRANSACTION + ${id},
                                  _aidl_in.getR(), _aidl_out.getR(), ${flags}_aidl_flags);
    if (_aidl_ret == STATUS_UNKNOWN_TRANSACTION && ${name}::getDefaultImpl() != nullptr) {
        return ${name}::getDefaultImpl()->${method}(${arguments});
    }
${after}}

)";

constexpr std::string_view kReturnOneway =
        R"(    return ::ndk::ScopedAStatus::fromStatus(_aidl_ret);
)";

constexpr std::string_view kReadReply =
        R"(    if (_aidl_ret != STATUS_OK) return ::ndk::ScopedAStatus::fromStatus(_aidl_ret);

    ::ndk::ScopedAStatus _aidl_status;
    _aidl_ret = AParcel_readStatusHeader(_aidl_out.get(), _aidl_status.getR());
    if (_aidl_ret != STATUS_OK) return ::ndk::ScopedAStatus::fromStatus(_aidl_ret);
    if (!_aidl_status.isOk()) return _aidl_status;
${read}${remember}    return _aidl_status;
)";

constexpr std::string_view kStep = R"(    _aidl_ret = ::ndk::AParcel_${call};
    if (_aidl_ret != STATUS_OK) return ::ndk::ScopedAStatus::fromStatus(_aidl_ret);
)";

constexpr std::string_view kFromCache = R"(    {
        const std::lock_guard<std::mutex> _aidl_lock(_aidl_cached_hash_mutex);
        if (${cache} != ${unset}) {
            *_aidl_return = ${cache};
            return ::ndk::ScopedAStatus::ok();
        }
    }
)";

constexpr std::string_view kToCache = R"(    {
        const std::lock_guard<std::mutex> _aidl_lock(_aidl_cached_hash_mutex);
        ${cache} = *_aidl_return;
    }
)";

std::string WriteArgument(const Argument& argument) {
    const std::string parameter = NdkParameterName(argument);
    if (!argument.IsIn()) {
        // The implementation gets an array as long as the caller's; of a list it gets an empty one.
        if (!argument.type.isArray) return {};
        return Fill(kStep, {{"call", "writeVectorSize(_aidl_in.get(), *" + parameter + ")"}});
    }
    const std::string call = Fill("write${nullable}Data(_aidl_in.get(), ${star}${parameter})",
                                  {{"nullable", NdkNullable(argument.type)},
                                   {"star", argument.IsOut() ? "*" : ""},
                                   {"parameter", parameter}});
    return Fill(kStep, {{"call", call}});
}

std::string ReadInto(const Type& type, const std::string& pointer) {
    const std::string call = Fill("read${nullable}Data(_aidl_out.get(), ${pointer})",
                                  {{"nullable", NdkNullable(type)}, {"pointer", pointer}});
    return Fill(kStep, {{"call", call}});
}

std::string WriteRequest(const Method& method) {
    std::string steps;
    for (const Argument& argument : method.arguments)
        steps += WriteArgument(argument);
    return steps;
}

std::string ReadReply(const Method& method) {
    std::string steps;
    if (!method.returnType.IsVoid()) steps += ReadInto(method.returnType, "_aidl_return");
    for (const Argument& argument : method.arguments) {
        if (argument.IsOut()) steps += ReadInto(argument.type, NdkParameterName(argument));
    }
    return steps;
}

std::string PrintMethod(const Definition& definition, const Method& method, std::string_view before,
                        std::string_view remember) {
    const bool oneway = NdkIsOneway(definition, method);
    const std::string after =
            oneway ? std::string(kReturnOneway)
                   : Fill(kReadReply, {{"read", ReadReply(method)}, {"remember", remember}});
    return Fill(kMethod, {{"name", definition.name},
                          {"base", NdkBaseName(definition)},
                          {"method", method.name},
                          {"parameters", NdkParameters(method)},
                          {"arguments", NdkArguments(method)},
                          {"before", before},
                          {"write", WriteRequest(method)},
                          {"id", std::to_string(method.id)},
                          {"flags", oneway ? "FLAG_ONEWAY | " : ""},
                          {"after", after}});
}

}  // namespace

bool NdkIsOneway(const Definition& definition, const Method& method) {
    return definition.IsOneway(method) && method.returnType.IsVoid();
}

std::string NdkArguments(const Method& method) {
    std::string arguments;
    for (const Argument& argument : method.arguments) {
        AppendSeparated(arguments, ", ", NdkParameterName(argument));
    }
    if (!method.returnType.IsVoid()) AppendSeparated(arguments, ", ", "_aidl_return");
    return arguments;
}

std::string PrintProxyMethod(const Definition& definition, const Method& method) {
    return PrintMethod(definition, method, {}, {});
}

std::string PrintCachedProxyMethod(const Definition& definition, const Method& method) {
    const bool isString = method.returnType.builtin == Builtin::kString;
    const std::string_view cache = isString ? "_aidl_cached_hash" : "_aidl_cached_version";
    const std::string_view unset = isString ? "\"-1\"" : "-1";
    return PrintMethod(definition, method, Fill(kFromCache, {{"cache", cache}, {"unset", unset}}),
                       Fill(kToCache, {{"cache", cache}}));
}

}  // namespace zarvo::host::aidl
