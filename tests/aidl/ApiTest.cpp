#include <gtest/gtest.h>

#include <string>

#include "tests/aidl/MemoryFiles.h"

namespace zarvo::host::aidl {
namespace {

TEST(ApiHash, IsTakenOverTheSortedListAndTheVersionBefore) {
    MemoryFiles files{{"api/1/b/C.aidl", "c\n"}, {"api/1/a/B.aidl", "b\n"}};
    std::string first;
    std::string third;
    EXPECT_EQ(RunCommand(files, {"--hashapi", "api/1"}, &first), "");
    EXPECT_EQ(RunCommand(files, {"--hashapi", "--version", "3", "api/1"}, &third), "");
    // What sha1sum and LC_ALL=C sort give for these files, with "latest-version" and "2".
    EXPECT_EQ(first, "c5659ac7fb521a49d898608ce12c4dc3c9a0005c\n");
    EXPECT_EQ(third, "96eb433af71e625a6f8fe8b82429247d6844fe29\n");
    EXPECT_EQ(RunCommand(files, {"--hashapi", "api/2"}), "error: no .aidl files in api/2\n");
}

std::string Check(const std::string& older, const std::string& newer) {
    MemoryFiles files{{"old/p/T.aidl", "package p; " + older},
                      {"new/p/T.aidl", "package p; " + newer}};
    const std::string messages =
            RunCommand(files, {"--checkapi=compatible", "--structured", "old", "new"});
    return messages.empty() ? messages : messages.substr(messages.find("error: ") + 7);
}

TEST(ApiCheck, CompatibleVersionsMayAddAndNothingElse) {
    const struct {
        const char* older;
        const char* newer;
        const char* message;
    } kCases[] = {
            {"parcelable T { int a; }", "parcelable T { int a; int b; }", ""},
            {"parcelable T { int a; }", "parcelable T { int b; int a; }",
             "T: field 'a' changed or moved\n"},
            {"parcelable T { int a; }", "parcelable T { int a = 1; }",
             "T: default value of 'a' changed\n"},
            {"parcelable T { int a; }", "parcelable T {}", "T: 'a' is missing\n"},
            {"interface T { void a(int x); }", "interface T { void a(int y); int b(); }", ""},
            {"interface T { void a(); void b(); }", "interface T { void b(); void a(); }",
             "T: method 'a' or its number changed\n"},
            {"interface T { const int A = 1; }", "interface T { const int A = 2; }",
             "T: constant 'A' changed\n"},
            {"enum T { A }", "enum T { A, B }", ""},
    };
    for (const auto& [older, newer, message] : kCases) {
        const std::string messages = Check(older, newer);
        EXPECT_EQ(messages.substr(0, messages.find('\n') + 1), message) << newer;
    }
}

}  // namespace
}  // namespace zarvo::host::aidl
