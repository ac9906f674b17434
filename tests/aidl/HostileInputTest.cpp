#include <gtest/gtest.h>

#include <string>

#include "tests/aidl/MemoryFiles.h"

namespace zarvo::host::aidl {
namespace {

std::string Repeat(std::string_view text, size_t count) {
    std::string result;
    for (size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

/** Deep and long input must end in this message, not in a crash. */
void ExpectComplaint(const std::string& text, const std::string& complaint) {
    const std::string messages = GenerateT("package p; " + text);
    EXPECT_NE(messages.find(" error: " + complaint + "\n"), std::string::npos) << messages;
}

TEST(HostileInput, DeepAndLongTextsEndInAMessage) {
    const std::string kConstant = "interface T { const int X = ";
    const std::pair<std::string, const char*> kCases[] = {
            {kConstant + Repeat("(", 100000), "expression is nested too deeply"},
            {kConstant + Repeat("{", 100000), "expression is nested too deeply"},
            {kConstant + Repeat("~", 100000) + "1", "expression is nested too deeply"},
            {kConstant + Repeat("1+", 50000) + "1", "expression is too long"},
            {kConstant + Repeat("a.", 50000) + "a", "name longer than 255 bytes"},
            {std::string(100000, 'a'), "word longer than 255 bytes"},
            {"parcelable T {" + Repeat("int a; ", 3000) + "}", "too many members"},
            {"enum T {" + Repeat("A, ", 3000) + "}", "too many enumerators"},
            {Repeat("@A ", 100) + "enum T { A }", "too many annotations"},
            {Repeat("import a.B; ", 3000), "too many imports"},
            {"parcelable T { List" + Repeat("<List", 10000),
             "lists of lists or arrays are not supported"},
            {"parcelable T { int" + Repeat("[]", 10000),
             "arrays of arrays or lists are not supported"},
    };
    for (const auto& [text, complaint] : kCases)
        ExpectComplaint(text, complaint);
}

TEST(HostileInput, ChainsOfConstantsEndInAMessage) {
    std::string text = "interface T { ";
    for (int i = 0; i < 1000; ++i) {
        text += "const int C" + std::to_string(i) + " = C" + std::to_string(i + 1) + "; ";
    }
    ExpectComplaint(text + "const int C1000 = 1; }",
                    "constants refer to each other in too long a chain");
    text = "interface T { const String S0 = \"0123456789\"; ";
    for (int i = 0; i < 100; ++i) {
        const std::string before = "S" + std::to_string(i);
        text += "const String S" + std::to_string(i + 1) + " = " + before + " + " + before + "; ";
    }
    ExpectComplaint(text + "}", "string is too long");
}

TEST(HostileInput, AChainOfImportsEndsInAMessage) {
    MemoryFiles files{{"p/T.aidl", "package p; parcelable T { T0 t; }"}};
    for (int i = 0; i < 3000; ++i) {
        const std::string name = "T" + std::to_string(i);
        files.files["p/" + name + ".aidl"] =
                "package p; parcelable " + name + " { T" + std::to_string(i + 1) + " t; }";
    }
    EXPECT_EQ(Generate(files), "error: more than 1000 files\n");
}

}  // namespace
}  // namespace zarvo::host::aidl
