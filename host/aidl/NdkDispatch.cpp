#include <string>
#include <string_view>

#include "host/aidl/NdkCalls.h"
#include "host/aidl/NdkNames.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kFunction = R"(static binder_status_t _aidl_on_${method}(
        ${name}& _aidl_impl, [[maybe_unused]] const AParcel* _aidl_in,
        [[maybe_unused]] AParcel* _aidl_out) {
${locals}${read}    const ::ndk::ScopedAStatus _aidl_status = _aidl_impl.${method}(${arguments});
${reply}}

)";

constexpr std::string_view kReply =
        R"(    binder_status_t _aidl_ret = AParcel_writeStatusHeader(_aidl_out, _aidl_status.get());
    if (_aidl_ret != STATUS_OK || !_aidl_status.isOk()) return _aidl_ret;
${write}    return STATUS_OK;
)";

constexpr std::string_view kReadStep =
        R"(    if (const binder_status_t _aidl_ret = ::ndk::AParcel_${call}; _aidl_ret != STATUS_OK) {
        return _aidl_ret;
    }
)";

constexpr std::string_view kWriteStep =
        R"(    _aidl_ret = ::ndk::AParcel_write${nullable}Data(_aidl_out, ${value});
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
)";

constexpr std::string_view kDispatch = R"(static binder_status_t _aidl_onTransact(
        AIBinder* _aidl_binder, transaction_code_t _aidl_code, const AParcel* _aidl_in,
        AParcel* _aidl_out) {
    const std::shared_ptr<${name}> _aidl_impl =
            std::static_pointer_cast<${name}>(::ndk::ICInterface::asInterface(_aidl_binder));
    if (_aidl_impl == nullptr) return STATUS_UNKNOWN_TRANSACTION;
    switch (_aidl_code) {
${cases}        default:
            return STATUS_UNKNOWN_TRANSACTION;
    }
}
)";

constexpr std::string_view kCase = R"(        case FIRST_CALL_TRANSACTION + ${id}:
            return _aidl_on_${method}(*_aidl_impl, _aidl_in, _aidl_out);
)";

std::string Locals(const Method& method) {
    std::string lines;
    for (const Argument& argument : method.arguments) {
        lines += "    " + NdkType(argument.type) + " " + NdkParameterName(argument) + "{};\n";
    }
    if (!method.returnType.IsVoid()) {
        lines += "    " + NdkType(method.returnType) + " _aidl_return{};\n";
    }
    return lines;
}

std::string ReadRequest(const Method& method) {
    std::string steps;
    for (const Argument& argument : method.arguments) {
        const std::string local = "(_aidl_in, &" + NdkParameterName(argument) + ")";
        const std::string nullable(NdkNullable(argument.type));
        if (argument.IsIn()) {
            steps += Fill(kReadStep, {{"call", "read" + nullable + "Data" + local}});
        } else if (argument.type.isArray) {
            steps += Fill(kReadStep, {{"call", "resizeVector" + local}});
        }
    }
    return steps;
}

std::string CallArguments(const Method& method) {
    std::string arguments;
    for (const Argument& argument : method.arguments) {
        AppendSeparated(arguments, ", ",
                        (argument.IsOut() ? "&" : "") + NdkParameterName(argument));
    }
    if (!method.returnType.IsVoid()) AppendSeparated(arguments, ", ", "&_aidl_return");
    return arguments;
}

std::string WriteReply(const Method& method) {
    std::string steps;
    if (!method.returnType.IsVoid()) {
        steps += Fill(kWriteStep,
                      {{"nullable", NdkNullable(method.returnType)}, {"value", "_aidl_return"}});
    }
    for (const Argument& argument : method.arguments) {
        if (!argument.IsOut()) continue;
        steps += Fill(kWriteStep, {{"nullable", NdkNullable(argument.type)},
                                   {"value", NdkParameterName(argument)}});
    }
    return steps;
}

std::string PrintFunction(const Definition& definition, const Method& method) {
    const bool oneway = NdkIsOneway(definition, method);
    return Fill(kFunction, {{"name", definition.name},
                            {"method", method.name},
                            {"locals", Locals(method)},
                            {"read", ReadRequest(method)},
                            {"arguments", CallArguments(method)},
                            {"reply", oneway ? "    return STATUS_OK;\n"
                                             : Fill(kReply, {{"write", WriteReply(method)}})}});
}

}  // namespace

std::string PrintDispatch(const Definition& definition, const std::vector<Method>& meta) {
    std::string functions;
    std::string cases;
    const auto add = [&](const Method& method) {
        functions += PrintFunction(definition, method);
        cases += Fill(kCase, {{"id", std::to_string(method.id)}, {"method", method.name}});
    };
    for (const Method& method : definition.methods)
        add(method);
    for (const Method& method : meta)
        add(method);
    return functions + Fill(kDispatch, {{"name", definition.name}, {"cases", cases}});
}

}  // namespace zarvo::host::aidl
