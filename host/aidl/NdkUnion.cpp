#include <string>
#include <string_view>

#include "host/aidl/NdkPrinter.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kTag = R"(class ${name} {
  public:
    typedef std::false_type fixed_size;
    static const char* descriptor;

    enum class Tag : int32_t {
${tags}    };

${aliases}
    template <typename _Tp>
    static constexpr bool _not_self =
            !std::is_same_v<std::remove_cv_t<std::remove_reference_t<_Tp>>, ${name}>;

    ${name}() : _value(std::in_place_index<static_cast<size_t>(Tag::${first})>${value}) {}
)";

constexpr std::string_view kAccess = R"(
    template <typename _Tp, typename = std::enable_if_t<_not_self<_Tp>>>
    constexpr ${name}(_Tp&& _arg) : _value(std::forward<_Tp>(_arg)) {}
    template <size_t _Np, typename... _Tp>
    constexpr explicit ${name}(std::in_place_index_t<_Np>, _Tp&&... _args)
        : _value(std::in_place_index<_Np>, std::forward<_Tp>(_args)...) {}

    template <Tag _tag, typename... _Tp>
    static ${name} make(_Tp&&... _args) {
        return ${name}(std::in_place_index<static_cast<size_t>(_tag)>,
                       std::forward<_Tp>(_args)...);
    }
    template <Tag _tag, typename _Tp, typename... _Up>
    static ${name} make(std::initializer_list<_Tp> _il, _Up&&... _args) {
        return ${name}(std::in_place_index<static_cast<size_t>(_tag)>, std::move(_il),
                       std::forward<_Up>(_args)...);
    }

    Tag getTag() const { return static_cast<Tag>(_value.index()); }

    template <Tag _tag>
    const auto& get() const {
        const auto* _alternative = std::get_if<static_cast<size_t>(_tag)>(&_value);
        if (_alternative == nullptr) std::abort();
        return *_alternative;
    }
    template <Tag _tag>
    auto& get() {
        auto* _alternative = std::get_if<static_cast<size_t>(_tag)>(&_value);
        if (_alternative == nullptr) std::abort();
        return *_alternative;
    }

    template <Tag _tag, typename... _Tp>
    void set(_Tp&&... _args) {
        _value.template emplace<static_cast<size_t>(_tag)>(std::forward<_Tp>(_args)...);
    }

    binder_status_t readFromParcel(const AParcel* _aidl_parcel);
    binder_status_t writeToParcel(AParcel* _aidl_parcel) const;

)";

constexpr std::string_view kComparison =
        R"(    inline bool operator${op}(const ${name}& _rhs) const { return _value ${op} _rhs._value; }
)";

constexpr std::string_view kEnd =
        R"(
    static const ::ndk::parcelable_stability_t _aidl_stability = ::ndk::${stability};
${constants}    std::string toString() const;

  private:
    std::variant<${types}> _value;
};

)";

constexpr std::string_view kRead = R"(binder_status_t ${name}::readFromParcel(
        const AParcel* _aidl_parcel) {
    int32_t _aidl_tag = 0;
    binder_status_t _aidl_ret = AParcel_readInt32(_aidl_parcel, &_aidl_tag);
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
    switch (static_cast<Tag>(_aidl_tag)) {
${cases}    }
    return STATUS_BAD_VALUE;
}

)";

constexpr std::string_view kReadCase = R"(        case Tag::${field}: {
            ${type} _aidl_value{};
            _aidl_ret = ::ndk::AParcel_read${nullable}Data(_aidl_parcel, &_aidl_value);
            if (_aidl_ret != STATUS_OK) return _aidl_ret;
            set<Tag::${field}>(std::move(_aidl_value));
            return STATUS_OK;
        }
)";

constexpr std::string_view kWrite = R"(binder_status_t ${name}::writeToParcel(
        AParcel* _aidl_parcel) const {
    const binder_status_t _aidl_ret =
            AParcel_writeInt32(_aidl_parcel, static_cast<int32_t>(getTag()));
    if (_aidl_ret != STATUS_OK) return _aidl_ret;
    switch (getTag()) {
${cases}    }
    return STATUS_BAD_VALUE;
}

)";

constexpr std::string_view kWriteCase = R"(        case Tag::${field}:
            return ::ndk::AParcel_write${nullable}Data(_aidl_parcel, get<Tag::${field}>());
)";

constexpr std::string_view kToString = R"(std::string ${name}::toString() const {
    std::string _aidl_text = "${name}{";
    switch (getTag()) {
${cases}    }
    return _aidl_text.append("}");
}
)";

constexpr std::string_view kToStringCase = R"(        case Tag::${field}:
            _aidl_text.append("${field}: ");
            _aidl_text.append(::android::internal::ToString(get<Tag::${field}>()));
            break;
)";

std::string TagLines(const Definition& definition) {
    std::string lines;
    for (const Enumerator& tag : UnionTags(definition)) {
        lines += "        " + tag.name + " = " + std::to_string(tag.value) + ",\n";
    }
    return lines;
}

std::string AliasLines(const Definition& definition) {
    std::string lines;
    for (const Field& field : definition.fields) {
        lines += Fill("    static const inline Tag ${field} = Tag::${field};\n",
                      {{"field", field.name}});
    }
    return lines;
}

std::string Comparisons(const Definition& definition) {
    std::string lines;
    for (const std::string_view op : {"!=", "<", "<=", "==", ">", ">="}) {
        lines += Fill(kComparison, {{"op", op}, {"name", definition.name}});
    }
    return lines;
}

std::string AlternativeTypes(const Definition& definition) {
    std::string types;
    for (const Field& field : definition.fields) {
        AppendSeparated(types, ", ", NdkType(field.type));
    }
    return types;
}

/** What the default constructor gives the first alternative, with a comma in front. */
std::string FirstValue(const Field& field) {
    const std::string value = NdkInitializer(field);
    return value.empty() ? "" : ", " + NdkType(field.type) + "(" + value + ")";
}

std::string Cases(const Definition& definition, std::string_view text) {
    std::string cases;
    for (const Field& field : definition.fields) {
        cases += Fill(text, {{"field", field.name},
                             {"type", NdkType(field.type)},
                             {"nullable", NdkNullable(field.type)}});
    }
    return cases;
}

}  // namespace

std::vector<Enumerator> UnionTags(const Definition& definition) {
    std::vector<Enumerator> tags(definition.fields.size());
    for (size_t i = 0; i < tags.size(); ++i) {
        tags[i].name = definition.fields[i].name;
        tags[i].value = static_cast<int64_t>(i);
    }
    return tags;
}

std::string PrintUnionDeclarations(const Definition& definition) {
    const std::string& name = definition.name;
    return Fill(kTag, {{"name", name},
                       {"tags", TagLines(definition)},
                       {"aliases", AliasLines(definition)},
                       {"first", definition.fields[0].name},
                       {"value", FirstValue(definition.fields[0])}}) +
           Fill(kAccess, {{"name", name}}) + Comparisons(definition) +
           Fill(kEnd,
                {{"stability", definition.IsVintfStable() ? "STABILITY_VINTF" : "STABILITY_LOCAL"},
                 {"constants", PrintConstantDeclarations(definition)},
                 {"types", AlternativeTypes(definition)}}) +
           PrintEnumToString(name + "::Tag", Builtin::kInt, UnionTags(definition));
}

std::string PrintUnionDefinitions(const Definition& definition) {
    const std::string& name = definition.name;
    return PrintConstantDefinitions(definition) +
           Fill(kRead, {{"name", name}, {"cases", Cases(definition, kReadCase)}}) +
           Fill(kWrite, {{"name", name}, {"cases", Cases(definition, kWriteCase)}}) +
           Fill(kToString, {{"name", name}, {"cases", Cases(definition, kToStringCase)}});
}

}  // namespace zarvo::host::aidl
