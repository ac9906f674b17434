#include <string>
#include <string_view>

#include "host/aidl/NdkCalls.h"
#include "host/aidl/NdkMeta.h"
#include "host/aidl/NdkPrinter.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kPrologue = R"(#ifdef BINDER_STABILITY_SUPPORT
[[maybe_unused]] static constexpr binder_flags_t _aidl_flags = FLAG_PRIVATE_LOCAL;
#else
[[maybe_unused]] static constexpr binder_flags_t _aidl_flags = 0;
#endif

)";

constexpr std::string_view kInterface = R"(
static AIBinder_Class* _aidl_class() {
    static AIBinder_Class* const _aidl_clazz =
            ::ndk::ICInterface::defineClass(${name}::descriptor, _aidl_onTransact);
    return _aidl_clazz;
}

${name}::${name}() {}
${name}::~${name}() {}

std::shared_ptr<${name}> ${name}::default_impl;

std::shared_ptr<${name}> ${name}::fromBinder(const ::ndk::SpAIBinder& binder) {
    if (!AIBinder_associateClass(binder.get(), _aidl_class())) return nullptr;
    const std::shared_ptr<::ndk::ICInterface> _aidl_local =
            ::ndk::ICInterface::asInterface(binder.get());
    if (_aidl_local != nullptr) return std::static_pointer_cast<${name}>(_aidl_local);
    return ::ndk::SharedRefBase::make<Bp${base}>(binder);
}

binder_status_t ${name}::writeToParcel(AParcel* parcel, const std::shared_ptr<${name}>& instance) {
    const ::ndk::SpAIBinder _aidl_binder =
            instance != nullptr ? instance->asBinder() : ::ndk::SpAIBinder();
    return AParcel_writeStrongBinder(parcel, _aidl_binder.get());
}

binder_status_t ${name}::readFromParcel(const AParcel* parcel, std::shared_ptr<${name}>* instance) {
    ::ndk::SpAIBinder _aidl_binder;
    const binder_status_t _aidl_ret = AParcel_readStrongBinder(parcel, _aidl_binder.getR());
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
    *instance = fromBinder(_aidl_binder);
    return STATUS_OK;
}

bool ${name}::setDefaultImpl(const std::shared_ptr<${name}>& impl) {
    assert(default_impl == nullptr);
    if (impl == nullptr) return false;
    default_impl = impl;
    return true;
}

const std::shared_ptr<${name}>& ${name}::getDefaultImpl() { return default_impl; }

${defaults}::ndk::SpAIBinder ${name}Default::asBinder() { return ::ndk::SpAIBinder(); }
bool ${name}Default::isRemote() { return false; }

)";

constexpr std::string_view kStub = R"(Bn${base}::Bn${base}() {}
Bn${base}::~Bn${base}() {}

${meta}::ndk::SpAIBinder Bn${base}::createBinder() {
    ::ndk::SpAIBinder _aidl_binder(
            AIBinder_new(_aidl_class(), static_cast<void*>(static_cast<::ndk::ICInterface*>(this))));
#ifdef BINDER_STABILITY_SUPPORT
    ${mark}(_aidl_binder.get());
#endif
    return _aidl_binder;
}

${name}Delegator::${name}Delegator(const std::shared_ptr<${name}>& impl) : _impl(impl) {
${check}}

)";

constexpr std::string_view kVersionCheck = R"(    int32_t _aidl_version = 0;
    // A delegator answers for its own version: it must not stand in for another one.
    if (!_impl->getInterfaceVersion(&_aidl_version).isOk() || _aidl_version != ${name}::version) {
        std::abort();
    }
)";

constexpr std::string_view kProxy = R"(
Bp${base}::Bp${base}(const ::ndk::SpAIBinder& binder) : BpCInterface(binder) {}
Bp${base}::~Bp${base}() {}

)";

constexpr std::string_view kMetaMethod =
        R"(::ndk::ScopedAStatus ${class}::${method}(${parameters}) {
    *_aidl_return = ${value};
    return ::ndk::ScopedAStatus::ok();
}

)";

constexpr std::string_view kMethod =
        R"(::ndk::ScopedAStatus ${class}::${method}(${parameters}) {
    return ${result};
}

)";

std::string MethodDefinition(const std::string& className, const Method& method,
                             const std::string& parameters, std::string_view result) {
    return Fill(kMethod, {{"class", className},
                          {"method", method.name},
                          {"parameters", parameters},
                          {"result", result}});
}

/** The parameters of a method that uses none of them: their types alone. */
std::string UnnamedParameters(const Method& method) {
    std::string parameters;
    for (const Argument& argument : method.arguments)
        AppendSeparated(parameters, ", ", NdkParameterType(argument));
    if (!method.returnType.IsVoid()) {
        AppendSeparated(parameters, ", ", NdkType(method.returnType) + "*");
    }
    return parameters;
}

std::string Defaults(const Definition& definition, const std::vector<Method>& meta) {
    const std::string name = definition.name + "Default";
    std::string definitions;
    for (const Method& method : definition.methods) {
        definitions += MethodDefinition(
                name, method, UnnamedParameters(method),
                "::ndk::ScopedAStatus(AStatus_fromStatus(STATUS_UNKNOWN_TRANSACTION))");
    }
    for (const Method& method : meta) {
        const bool isString = method.returnType.builtin == Builtin::kString;
        definitions += Fill(kMetaMethod, {{"class", name},
                                          {"method", method.name},
                                          {"parameters", NdkParameters(method)},
                                          {"value", isString ? "\"\"" : "0"}});
    }
    return definitions;
}

std::string StubMeta(const Definition& definition, const std::vector<Method>& meta) {
    std::string definitions;
    for (const Method& method : meta) {
        const bool isString = method.returnType.builtin == Builtin::kString;
        definitions += Fill(kMetaMethod,
                            {{"class", "Bn" + NdkBaseName(definition)},
                             {"method", method.name},
                             {"parameters", NdkParameters(method)},
                             {"value", definition.name + (isString ? "::hash" : "::version")}});
    }
    return definitions;
}

std::string DelegatorMethods(const Definition& definition) {
    std::string definitions;
    for (const Method& method : definition.methods) {
        definitions +=
                MethodDefinition(definition.name + "Delegator", method, NdkParameters(method),
                                 "_impl->" + method.name + "(" + NdkArguments(method) + ")");
    }
    return definitions;
}

std::string ProxyMethods(const Definition& definition, const std::vector<Method>& meta) {
    std::string definitions;
    for (const Method& method : definition.methods) {
        definitions += PrintProxyMethod(definition, method);
    }
    for (const Method& method : meta)
        definitions += PrintCachedProxyMethod(definition, method);
    return definitions;
}

}  // namespace

std::string PrintInterfaceDefinitions(const Definition& definition, const NdkOptions& options) {
    const std::string& name = definition.name;
    const std::string base = NdkBaseName(definition);
    const std::vector<Method> meta = MetaMethods(options);
    const bool vintf = definition.IsVintfStable();
    return PrintConstantDefinitions(definition) + std::string(kPrologue) +
           PrintDispatch(definition, meta) +
           Fill(kInterface,
                {{"name", name}, {"base", base}, {"defaults", Defaults(definition, meta)}}) +
           Fill(kStub,
                {{"name", name},
                 {"base", base},
                 {"meta", StubMeta(definition, meta)},
                 {"mark",
                  vintf ? "AIBinder_markVintfStability" : "AIBinder_markCompilationUnitStability"},
                 {"check", options.version == 0 ? "" : Fill(kVersionCheck, {{"name", name}})}}) +
           DelegatorMethods(definition) + Fill(kProxy, {{"base", base}}) +
           ProxyMethods(definition, meta);
}

}  // namespace zarvo::host::aidl
