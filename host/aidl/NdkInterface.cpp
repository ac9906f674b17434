#include <string>
#include <string_view>

#include "host/aidl/NdkMeta.h"
#include "host/aidl/NdkPrinter.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kInterface = R"(class ${name}Delegator;

class ${name} : public ::ndk::ICInterface {
  public:
    static const char* descriptor;
    ${name}();
    virtual ~${name}();

${constants}${version}${codes}
    static std::shared_ptr<${name}> fromBinder(const ::ndk::SpAIBinder& binder);
    static binder_status_t writeToParcel(AParcel* parcel, const std::shared_ptr<${name}>& instance);
    static binder_status_t readFromParcel(const AParcel* parcel, std::shared_ptr<${name}>* instance);
    static bool setDefaultImpl(const std::shared_ptr<${name}>& impl);
    static const std::shared_ptr<${name}>& getDefaultImpl();
${methods}
  private:
    static std::shared_ptr<${name}> default_impl;
};

class ${name}Default : public ${name} {
  public:
${defaults}    ::ndk::SpAIBinder asBinder() override;
    bool isRemote() override;
};
)";

constexpr std::string_view kStub = R"(class Bn${base} : public ::ndk::BnCInterface<${name}> {
  public:
    Bn${base}();
    virtual ~Bn${base}();
${meta}
  protected:
    ::ndk::SpAIBinder createBinder() override;
};

class ${name}Delegator : public Bn${base} {
  public:
    explicit ${name}Delegator(const std::shared_ptr<${name}>& impl);
${methods}
  private:
    std::shared_ptr<${name}> _impl;
};
)";

constexpr std::string_view kProxy = R"(class Bp${base} : public ::ndk::BpCInterface<${name}> {
  public:
    explicit Bp${base}(const ::ndk::SpAIBinder& binder);
    virtual ~Bp${base}();

${methods}${caches}};
)";

/** One declaration per method, each followed by `ending`. */
std::string MethodLines(const std::vector<Method>& methods, std::string_view start,
                        std::string_view ending) {
    std::string lines;
    for (const Method& method : methods) {
        lines += Fill("    ${start}::ndk::ScopedAStatus ${name}(${parameters})${ending};\n",
                      {{"start", start},
                       {"name", method.name},
                       {"parameters", NdkParameters(method)},
                       {"ending", ending}});
    }
    return lines;
}

std::string VersionLines(const NdkOptions& options) {
    std::string lines;
    if (options.version != 0) {
        lines += "    static const int32_t version = " + std::to_string(options.version) + ";\n";
    }
    if (!options.hash.empty()) {
        lines += "    static inline const std::string hash = \"" + options.hash + "\";\n";
    }
    return lines;
}

std::string CodeLines(const Definition& definition) {
    std::string lines;
    for (const Method& method : definition.methods) {
        lines +=
                Fill("    static constexpr uint32_t TRANSACTION_${name} = "
                     "FIRST_CALL_TRANSACTION + ${id};\n",
                     {{"name", method.name}, {"id", std::to_string(method.id)}});
    }
    return lines;
}

std::string CacheLines(const NdkOptions& options) {
    std::string lines;
    if (options.version != 0) lines += "    int32_t _aidl_cached_version = -1;\n";
    if (!options.hash.empty()) lines += "    std::string _aidl_cached_hash = \"-1\";\n";
    return lines.empty() ? lines : "\n" + lines + "    std::mutex _aidl_cached_hash_mutex;\n";
}

}  // namespace

std::string PrintInterfaceDeclarations(const Definition& definition, const NdkOptions& options) {
    const std::vector<Method> meta = MetaMethods(options);
    return Fill(kInterface, {{"name", definition.name},
                             {"constants", PrintConstantDeclarations(definition)},
                             {"version", VersionLines(options)},
                             {"codes", CodeLines(definition)},
                             {"methods", MethodLines(definition.methods, "virtual ", " = 0") +
                                                 MethodLines(meta, "virtual ", " = 0")},
                             {"defaults", MethodLines(definition.methods, "", " override") +
                                                  MethodLines(meta, "", " override")}});
}

std::string PrintStubDeclarations(const Definition& definition, const NdkOptions& options) {
    return Fill(kStub, {{"name", definition.name},
                        {"base", NdkBaseName(definition)},
                        {"meta", MethodLines(MetaMethods(options), "", " final")},
                        {"methods", MethodLines(definition.methods, "", " override")}});
}

std::string PrintProxyDeclarations(const Definition& definition, const NdkOptions& options) {
    return Fill(kProxy, {{"name", definition.name},
                         {"base", NdkBaseName(definition)},
                         {"methods", MethodLines(definition.methods, "", " override") +
                                             MethodLines(MetaMethods(options), "", " override")},
                         {"caches", CacheLines(options)}});
}

}  // namespace zarvo::host::aidl
