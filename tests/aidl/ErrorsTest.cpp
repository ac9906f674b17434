#include <gtest/gtest.h>

#include <string>

#include "tests/aidl/MemoryFiles.h"

namespace zarvo::host::aidl {
namespace {

/** The first message for p/T.aidl, without the file's name. */
std::string Message(const std::string& text) {
    const std::string messages = GenerateT(text);
    const size_t place = std::string_view("p/T.aidl:").size();
    return messages.substr(place, messages.find('\n') - place);
}

TEST(Errors, PlacesAreLineAndColumnInTheFile) {
    const std::pair<const char*, const char*> kCases[] = {
            {"", "1:1: error: expected 'package', not the end of the file"},
            {"package p\nparcelable T {}", "2:1: error: expected ';', not 'parcelable'"},
            {"package p.;", "1:11: error: expected a name after '.', not ';'"},
            {"package p;\n  parcelable T {\n\tint a\n}", "4:1: error: expected ';', not '}'"},
            {"package q; parcelable T {}", "1:23: error: type q.T has to lie in a file q/T.aidl"},
    };
    for (const auto& [text, message] : kCases)
        EXPECT_EQ(Message(text), message);
}

TEST(Errors, RulesAreCheckedAndNameTheColumn) {
    const struct {
        const char* text;
        int column;
        const char* complaint;
    } kCases[] = {
            // Syntax.
            {"class T {}", 1, "expected 'interface', 'parcelable', 'union' or 'enum', not 'class'"},
            {"\x01", 1, "character that no AIDL file holds here"},
            {"parcelable T { String s = \"half; }", 27,
             "a literal ends on its line and holds printable ASCII characters only"},
            {"parcelable T { String s = \"a\\n\"; }", 27, "escapes are not supported"},
            {"parcelable T {} parcelable U {}", 17, "only one type per file is supported"},
            // What is not supported.
            {"parcelable T { @nullable String b; }", 26,
             "@nullable is supported for interfaces only"},
            {"@FixedSize parcelable T {}", 1, "annotation @FixedSize is not supported here"},
            // Rules beyond syntax.
            {"parcelable T { Unknown u; }", 16, "cannot find the type 'Unknown'"},
            {"import q.Missing; parcelable T {}", 8, "cannot find the imported type q.Missing"},
            {"parcelable T { int a; String a; }", 30, "the name 'a' is used twice"},
            {"parcelable T { int virtual; }", 20, "'virtual' may not be a name"},
            {"union T { int getTag; }", 15, "the name 'getTag' is taken by generated code"},
            {"parcelable T { T[] a; }", 12, "type T contains itself"},
            {"@Backing(type=\"char\") enum T { A }", 1,
             "expected @Backing(type=\"byte\"), \"int\" or \"long\""},
            {"@VintfStability @VintfStability parcelable T {}", 17,
             "annotation @VintfStability is given twice"},
            {"interface T { void a(int[] b); }", 28, "argument 'b' needs in, out or inout"},
            {"interface T { void a(out int b); }", 30, "an argument of type 'int' can only be in"},
            {"oneway interface T { void a(out int[] b); }", 39,
             "oneway method 'a' cannot have out arguments"},
            {"interface T { void a() = 1; void b() = 1; }", 34, "the number 1 is used twice"},
    };
    for (const auto& [text, column, complaint] : kCases) {
        EXPECT_EQ(Message(std::string("package p;\n") + text),
                  "2:" + std::to_string(column) + ": error: " + complaint);
    }
}

TEST(Errors, CirclesOfFilesAreFineButOfConstantsAndValuesRefused) {
    const struct {
        std::string t, u, messages;
    } kCases[] = {
            {"import p.U; interface T { void a(U u); }", "import p.T; interface U { void a(T t); }",
             ""},
            {"parcelable T { U u; }", "union U { int i; T[] t; }",
             "p/T.aidl:1:23: error: type T contains itself\n"},
            {"interface T { const int A = U.B; }", "interface U { const int B = T.A; }",
             "./p/U.aidl:1:40: error: no constant 'T.A' that is defined before this\n"},
            {"parcelable T { p.U u; }", "@VintfStability parcelable U {}",
             "./p/U.aidl:1:39: error: type U is marked @VintfStability: "
             "--stability vintf is needed\n"},
    };
    for (const auto& [t, u, messages] : kCases) {
        MemoryFiles files{{"p/T.aidl", "package p; " + t}, {"p/U.aidl", "package p; " + u}};
        EXPECT_EQ(Generate(files), messages);
    }
}

TEST(Errors, NothingIsWrittenForFilesThatDoNotGoTogetherOrCannotBeReadOrWritten) {
    MemoryFiles files{{"p/ITree.aidl", "package p; interface ITree {}"},
                      {"p/Tree.aidl", "package p; parcelable Tree {}"}};
    const auto run = [&](std::vector<std::string_view> arguments) {
        arguments.push_back("--structured");
        return RunCommand(files, arguments);
    };
    EXPECT_EQ(run({"--lang=ndk", "-hh", "-oo", "p/ITree.aidl", "p/Tree.aidl"}),
              "p/Tree.aidl:1:23: error: types ITree and Tree both make a file aidl/p/BnTree.h\n"
              "p/Tree.aidl:1:23: error: types ITree and Tree both make a file aidl/p/BpTree.h\n");
    EXPECT_EQ(run({"--dumpapi", "--stability=vintf", "--out", "d", "p/Tree.aidl"}),
              "p/Tree.aidl:1:23: error: type Tree has to be marked @VintfStability, because of "
              "--stability vintf\n");
    EXPECT_EQ(run({"--lang=ndk", "-hh", "-oo", "p/None.aidl"}),
              "error: p/None.aidl does not exist\n");
    EXPECT_EQ(files.files.size(), 2u) << "files were written in spite of errors";
    files.writable = false;
    EXPECT_EQ(run({"--dumpapi", "--out=d", "p/Tree.aidl"}), "error: cannot write d/p/Tree.aidl\n");
}

TEST(Errors, CommandLinesAreChecked) {
    const std::pair<std::vector<std::string_view>, std::string> kCases[] = {
            {{}, "no files are given"},
            {{"--lang=java", "a"}, "the only language is ndk"},
            {{"a", "--stability"}, "--stability needs a value"},
            {{"--version", "0", "a"}, "--version takes a number from 1 on"},
            {{"--version=99999999999", "a"}, "--version takes a number from 1 on"},
            {{"--hash", "abc\"", "a"},
             "--hash takes 40 lower-case hexadecimal digits or notfrozen"},
            {{"--checkapi=same", "a", "b"}, "--checkapi takes equal or compatible"},
            {{"--lang=ndk", "a", "-hx", "-ox"},
             "--structured is missing: there are only structured types"},
    };
    MemoryFiles files{};
    for (const auto& [arguments, complaint] : kCases)
        EXPECT_EQ(RunCommand(files, arguments), complaint);
}

}  // namespace
}  // namespace zarvo::host::aidl
