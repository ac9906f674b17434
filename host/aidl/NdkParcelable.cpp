#include <string>
#include <string_view>

#include "host/aidl/NdkPrinter.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kClass = R"(class ${name} {
  public:
    typedef std::false_type fixed_size;
    static const char* descriptor;

${fields}
    binder_status_t readFromParcel(const AParcel* _aidl_parcel);
    binder_status_t writeToParcel(AParcel* _aidl_parcel) const;

${comparisons}
    static const ::ndk::parcelable_stability_t _aidl_stability = ::ndk::${stability};
${constants}    std::string toString() const;
};
)";

constexpr std::string_view kComparison =
        R"(    inline bool operator${op}(const ${name}&${rhs}) const {
        return std::tie(${own}) ${op} std::tie(${other});
    }
)";

constexpr std::string_view kRead = R"(binder_status_t ${name}::readFromParcel(
        const AParcel* _aidl_parcel) {
    const int32_t _aidl_start = AParcel_getDataPosition(_aidl_parcel);
    int32_t _aidl_size = 0;
    binder_status_t _aidl_ret = AParcel_readInt32(_aidl_parcel, &_aidl_size);
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
    if (_aidl_size < 4 || _aidl_start > INT32_MAX - _aidl_size) return STATUS_BAD_VALUE;
    // An older writer knows fewer fields, a newer one more: the size tells where they end.
    const int32_t _aidl_end = _aidl_start + _aidl_size;
${fields}    return AParcel_setDataPosition(_aidl_parcel, _aidl_end);
}

)";

constexpr std::string_view kReadField =
        R"(    if (AParcel_getDataPosition(_aidl_parcel) >= _aidl_end) {
        return AParcel_setDataPosition(_aidl_parcel, _aidl_end);
    }
    _aidl_ret = ::ndk::AParcel_read${nullable}Data(_aidl_parcel, &${field});
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
)";

constexpr std::string_view kWrite = R"(binder_status_t ${name}::writeToParcel(
        AParcel* _aidl_parcel) const {
    const int32_t _aidl_start = AParcel_getDataPosition(_aidl_parcel);
    binder_status_t _aidl_ret = AParcel_writeInt32(_aidl_parcel, 0);
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
${fields}    const int32_t _aidl_end = AParcel_getDataPosition(_aidl_parcel);
    _aidl_ret = AParcel_setDataPosition(_aidl_parcel, _aidl_start);
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
    _aidl_ret = AParcel_writeInt32(_aidl_parcel, _aidl_end - _aidl_start);
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
    return AParcel_setDataPosition(_aidl_parcel, _aidl_end);
}

)";

constexpr std::string_view kWriteField =
        R"(    _aidl_ret = ::ndk::AParcel_write${nullable}Data(_aidl_parcel, ${field});
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
)";

constexpr std::string_view kToString = R"(std::string ${name}::toString() const {
    std::string _aidl_text = "${name}{";
${fields}    return _aidl_text.append("}");
}
)";

std::string FieldLines(const Definition& definition) {
    std::string lines;
    for (const Field& field : definition.fields) {
        const std::string value = NdkInitializer(field);
        lines += "    " + NdkType(field.type) + " " + field.name +
                 (value.empty() ? "" : " = " + value) + ";\n";
    }
    return lines;
}

/** All fields of one object, joined by commas. */
std::string FieldList(const Definition& definition, const std::string& prefix) {
    std::string list;
    for (const Field& field : definition.fields) {
        AppendSeparated(list, ", ", prefix + field.name);
    }
    return list;
}

std::string Comparisons(const Definition& definition) {
    const std::string own = FieldList(definition, "");
    const std::string other = FieldList(definition, "_rhs.");
    std::string comparisons;
    for (const std::string_view op : {"!=", "<", "<=", "==", ">", ">="}) {
        comparisons += Fill(kComparison, {{"op", op},
                                          {"name", definition.name},
                                          {"rhs", own.empty() ? "" : " _rhs"},
                                          {"own", own},
                                          {"other", other}});
    }
    return comparisons;
}

std::string FieldSteps(const Definition& definition, std::string_view step) {
    std::string steps;
    for (const Field& field : definition.fields) {
        steps += Fill(step, {{"field", field.name}, {"nullable", NdkNullable(field.type)}});
    }
    return steps;
}

std::string ToStringLines(const Definition& definition) {
    std::string lines;
    for (const Field& field : definition.fields) {
        const std::string_view separator = lines.empty() ? "" : ", ";
        lines += Fill(R"(    _aidl_text.append("${separator}${field}: ");
    _aidl_text.append(::android::internal::ToString(${field}));
)",
                      {{"separator", separator}, {"field", field.name}});
    }
    return lines;
}

}  // namespace

std::string PrintParcelableDeclarations(const Definition& definition) {
    return Fill(kClass,
                {{"name", definition.name},
                 {"fields", FieldLines(definition)},
                 {"comparisons", Comparisons(definition)},
                 {"stability", definition.IsVintfStable() ? "STABILITY_VINTF" : "STABILITY_LOCAL"},
                 {"constants", PrintConstantDeclarations(definition)}});
}

std::string PrintParcelableDefinitions(const Definition& definition) {
    const std::string& name = definition.name;
    return PrintConstantDefinitions(definition) +
           Fill(kRead, {{"name", name}, {"fields", FieldSteps(definition, kReadField)}}) +
           Fill(kWrite, {{"name", name}, {"fields", FieldSteps(definition, kWriteField)}}) +
           Fill(kToString, {{"name", name}, {"fields", ToStringLines(definition)}});
}

}  // namespace zarvo::host::aidl
