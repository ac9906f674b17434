#include "host/aidl/Builtins.h"

#include <algorithm>
#include <array>
#include <span>

namespace zarvo::host::aidl {

namespace {

struct BuiltinRow {
    std::string_view name;
    Builtin builtin;
};

constexpr std::array<BuiltinRow, 9> kBuiltins = {{{"void", Builtin::kVoid},
                                                  {"boolean", Builtin::kBoolean},
                                                  {"byte", Builtin::kByte},
                                                  {"char", Builtin::kChar},
                                                  {"int", Builtin::kInt},
                                                  {"long", Builtin::kLong},
                                                  {"float", Builtin::kFloat},
                                                  {"double", Builtin::kDouble},
                                                  {"String", Builtin::kString}}};

constexpr std::string_view kUnsupported[] = {
        "CharSequence", "FileDescriptor",       "IBinder",         "List",
        "Map",          "ParcelFileDescriptor", "ParcelableHolder"};

constexpr std::string_view kAidlWords[] = {"const",   "cpp_header", "enum",      "false",  "import",
                                           "in",      "inout",      "interface", "oneway", "out",
                                           "package", "parcelable", "true",      "union"};

constexpr std::string_view kCppWords[] = {"alignas",       "alignof",      "and",
                                          "and_eq",        "asm",          "auto",
                                          "bitand",        "bitor",        "bool",
                                          "break",         "case",         "catch",
                                          "char",          "char16_t",     "char32_t",
                                          "char8_t",       "class",        "co_await",
                                          "co_return",     "co_yield",     "compl",
                                          "concept",       "const",        "const_cast",
                                          "consteval",     "constexpr",    "constinit",
                                          "continue",      "decltype",     "default",
                                          "delete",        "do",           "double",
                                          "dynamic_cast",  "else",         "enum",
                                          "explicit",      "export",       "extern",
                                          "false",         "float",        "for",
                                          "friend",        "goto",         "if",
                                          "inline",        "int",          "long",
                                          "mutable",       "namespace",    "new",
                                          "noexcept",      "not",          "not_eq",
                                          "nullptr",       "operator",     "or",
                                          "or_eq",         "private",      "protected",
                                          "public",        "register",     "reinterpret_cast",
                                          "requires",      "return",       "short",
                                          "signed",        "sizeof",       "static",
                                          "static_assert", "static_cast",  "std",
                                          "struct",        "switch",       "template",
                                          "this",          "thread_local", "throw",
                                          "true",          "try",          "typedef",
                                          "typeid",        "typename",     "union",
                                          "unsigned",      "using",        "virtual",
                                          "void",          "volatile",     "wchar_t",
                                          "while",         "xor",          "xor_eq"};

constexpr std::string_view kMacros[] = {"assert", "EOF",   "errno", "NULL",
                                        "stderr", "stdin", "stdout"};

constexpr std::string_view kInterfaceMembers[] = {"asBinder",
                                                  "createBinder",
                                                  "default_impl",
                                                  "descriptor",
                                                  "dump",
                                                  "fromBinder",
                                                  "getDefaultImpl",
                                                  "getInterfaceHash",
                                                  "getInterfaceVersion",
                                                  "handleShellCommand",
                                                  "hash",
                                                  "isRemote",
                                                  "readFromParcel",
                                                  "setDefaultImpl",
                                                  "version",
                                                  "writeToParcel"};

constexpr std::string_view kParcelableMembers[] = {"descriptor", "fixed_size", "readFromParcel",
                                                   "toString", "writeToParcel"};

constexpr std::string_view kUnionMembers[] = {"get", "getTag", "make", "set", "Tag"};

bool Contains(std::span<const std::string_view> words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

}  // namespace

Builtin FindBuiltin(std::string_view name) {
    for (const BuiltinRow& row : kBuiltins) {
        if (row.name == name) return row.builtin;
    }
    return Builtin::kNone;
}

std::string_view BuiltinName(Builtin builtin) {
    for (const BuiltinRow& row : kBuiltins) {
        if (row.builtin == builtin) return row.name;
    }
    return {};
}

bool IsUnsupportedBuiltin(std::string_view name) {
    return Contains(kUnsupported, name);
}

bool IsAidlWord(std::string_view word) {
    return Contains(kAidlWords, word);
}

bool IsReservedWord(std::string_view word) {
    // Names with "__" or "_X" are the C++ implementation's.
    const bool implementation =
            word.find("__") != std::string_view::npos ||
            (word.size() > 1 && word[0] == '_' && word[1] >= 'A' && word[1] <= 'Z');
    return implementation || word.starts_with("_aidl") || IsAidlWord(word) ||
           Contains(kCppWords, word) || Contains(kMacros, word);
}

bool IsTakenMember(const Definition& definition, std::string_view name) {
    switch (definition.kind) {
        case Definition::Kind::kEnum:
            return false;
        case Definition::Kind::kInterface:
            return name == definition.name || name.starts_with("TRANSACTION_") ||
                   Contains(kInterfaceMembers, name);
        case Definition::Kind::kUnion:
            if (Contains(kUnionMembers, name)) return true;
            break;
        case Definition::Kind::kParcelable:
            break;
    }
    return name == definition.name || Contains(kParcelableMembers, name);
}

}  // namespace zarvo::host::aidl
