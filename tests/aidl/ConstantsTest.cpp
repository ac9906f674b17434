#include <gtest/gtest.h>

#include <string>

#include "tests/aidl/MemoryFiles.h"

namespace zarvo::host::aidl {
namespace {

/** The value that a dump shows for a constant, or the message without its place. */
std::string Evaluate(const std::string& type, const std::string& expression) {
    MemoryFiles files{{"p/T.aidl",
                       "package p; parcelable T { const int ONE = 1; const String S = "
                       "\"s\"; " +
                               type + " X = " + expression + "; }"},
                      {"p/E.aidl", "package p; @Backing(type=\"int\") enum E { A = 5, B }"}};
    const std::string messages =
            RunCommand(files, {"--dumpapi", "--structured", "-I.", "--out=d", "p/T.aidl"});
    if (!messages.empty()) return messages.substr(messages.find("error: ") + 7);
    const std::string& dump = files.files["d/p/T.aidl"];
    const size_t start = dump.find(" X = ") + 5;
    return dump.substr(start, dump.find(';', start) - start);
}

TEST(Constants, AreComputedOrRefusedWithAReason) {
    const struct {
        const char* type;
        const char* expression;
        const char* result;
    } kCases[] = {
            {"int[]", "{0x3F, 1 + 2 * 3, (1 + 2) * 3, 10 - 4 - 3, 1 << 4 | 1 << 1, 1 << 31}",
             "{63, 7, 9, 3, 18, -2147483648}"},
            {"int[]", "{-8 >> 1, 7 % -4, ~0 & 0xff ^ 0x0f, 0xffffffff, -2147483648, - - 5}",
             "{-4, 3, 240, -1, -2147483648, 5}"},
            {"const int", "ONE + T.ONE + p.T.ONE + E.B", "9"},
            {"byte[]", "{255u8, -128, 1 + 1}", "{-1, -128, 2}"},
            {"long[]", "{0x7fffffffffffffff, -9223372036854775808}",
             "{9223372036854775807, -9223372036854775808}"},
            {"const long", "(1L << 40) + 3000000000 * 2", "1105511627776"},
            {"const String", "\"a\" + S + \"b\"", "\"asb\""},
            {"boolean", "1 < 2 && !(3 == 4) || false", "true"},
            {"boolean", "2 >= 3 || 1 != 1", "false"},
            {"char", "'\"'", "'\"'"},
            {"float", "-1.5f", "-1.5"},
            {"double", "1e3", "1e3"},
            {"String[]", "{}", "{}"},
            {"p.E", "E.B", "p.E.B"},
            {"E[]", "{E.A, p.E.B,}", "{p.E.A, p.E.B}"},
            {"const int", "2147483648", "value 2147483648 is out of range\n"},
            {"const int", "2147483647 + 1", "result does not fit 32 bits\n"},
            {"const long", "9223372036854775807 + 1", "result does not fit 64 bits\n"},
            {"const long", "(-9223372036854775807 - 1L) / -1", "result does not fit 64 bits\n"},
            {"const long", "9223372036854775808", "integer literal is too large\n"},
            {"const byte", "256u8", "byte literal is not within 0u8 and 255u8\n"},
            {"const int", "1 / (1 - 1)", "division by zero\n"},
            {"const int", "1 << 32", "shift by a negative number or too far\n"},
            {"const int", "12ab", "malformed integer literal\n"},
            {"const int", "\"a\"", "expected an integer\n"},
            {"const int", "X", "no constant 'X' that is defined before this\n"},
            {"char", "'ab'", "expected one character in single quotes\n"},
            {"float", "1e99", "value does not fit a float\n"},
            {"int[]", "1", "an array's value is a list in braces\n"},
            {"E", "5", "expected an enumerator of p.E\n"},
    };
    for (const auto& [type, expression, result] : kCases)
        EXPECT_EQ(Evaluate(type, expression), result) << expression;
}

}  // namespace
}  // namespace zarvo::host::aidl
