#include <gtest/gtest.h>

#include <string>

#include "tests/aidl/MemoryFiles.h"

namespace zarvo::host::aidl {
namespace {

/** The first message for p/T.aidl. */
std::string Message(const std::string& text) {
    const std::string messages = GenerateT(text);
    return messages.substr(0, messages.find('\n'));
}

/** A text after the line with its package, the column of its fault, and the complaint. */
struct Case {
    const char* text;
    int column;
    const char* complaint;
};

void ExpectMessages(std::initializer_list<Case> cases) {
    for (const auto& [text, column, complaint] : cases) {
        EXPECT_EQ(Message(std::string("package p;\n") + text),
                  "p/T.aidl:2:" + std::to_string(column) + ": error: " + complaint)
                << text;
    }
}

TEST(Errors, PlacesAreLineAndColumnInTheFile) {
    const std::pair<const char*, const char*> kCases[] = {
            {"", "1:1: error: expected 'package', not the end of the file"},
            {"parcelable T {}", "1:1: error: expected 'package', not 'parcelable'"},
            {"package p\nparcelable T {}", "2:1: error: expected ';', not 'parcelable'"},
            {"package p.;", "1:11: error: expected a name after '.', not ';'"},
            {"package p;\n  parcelable T {\n\tint a\n}", "4:1: error: expected ';', not '}'"},
            {"package q; parcelable T {}", "1:23: error: type q.T has to lie in a file q/T.aidl"},
    };
    for (const auto& [text, message] : kCases)
        EXPECT_EQ(Message(text), std::string("p/T.aidl:") + message);
}

TEST(Errors, SyntaxIsChecked) {
    ExpectMessages({
            {"import q.R", 11, "expected ';', not the end of the file"},
            {"class T {}", 1, "expected 'interface', 'parcelable', 'union' or 'enum', not 'class'"},
            {"oneway parcelable T {}", 8, "expected 'interface', not 'parcelable'"},
            {"parcelable T { int a; ", 23, "expected '}', not the end of the file"},
            {"/* half", 1, "comment without an end"},
            {"/*/", 1, "comment without an end"},
            {"\x01", 1, "character that no AIDL file holds here"},
            {"parcelable T { String s = \"half; }", 27,
             "a literal ends on its line and holds printable ASCII characters only"},
            {"parcelable T { String s = \"a\\n\"; }", 27, "escapes are not supported"},
            {"parcelable T { int a = ; }", 24, "expected a constant expression, not ';'"},
            {"interface T { void a(int); }", 25, "expected the argument's name, not ')'"},
            {"interface T { void a() = 1L; }", 26,
             "expected the method's number in decimal digits, not '1L'"},
            {"@Backing(type=int) enum T { A }", 15, "expected a string, true or false"},
            {"parcelable T {} parcelable U {}", 17, "only one type per file is supported"},
    });
}

TEST(Errors, WhatIsNotSupportedIsRefusedByName) {
    ExpectMessages({
            {"parcelable T;", 13,
             "a type without a body (unstructured parcelable) is not supported"},
            {"parcelable T<U> {}", 13, "generic types are not supported"},
            {"parcelable T { parcelable U {} }", 16, "nested types are not supported"},
            {"parcelable T { Map<int, int> m; }", 19,
             "generic type 'Map' is not supported, only List<T> is"},
            {"parcelable T { List<List<int>> m; }", 25,
             "lists of lists or arrays are not supported"},
            {"parcelable T { int[][] m; }", 21, "arrays of arrays or lists are not supported"},
            {"parcelable T { int[3] m; }", 20, "arrays of fixed size are not supported"},
            {"parcelable T { IBinder b; }", 16, "type 'IBinder' is not supported"},
            {"parcelable T { List<int> b; }", 21,
             "a list holds Strings or parcelables; use 'int[]'"},
            {"interface T { void a(in T[] t); }", 25, "arrays and lists of 'T' are not supported"},
            {"parcelable T { @nullable String b; }", 26,
             "@nullable is supported for interfaces only"},
            {"@FixedSize parcelable T {}", 1, "annotation @FixedSize is not supported here"},
            {"parcelable T { const float X = 1.0; }", 22,
             "a constant is a byte, int, long or String"},
    });
}

TEST(Errors, RulesBeyondSyntaxAreChecked) {
    ExpectMessages({
            {"parcelable U {}", 12, "type p.U has to lie in a file p/U.aidl"},
            {"parcelable T { Unknown u; }", 16, "cannot find the type 'Unknown'"},
            {"import q.Missing; parcelable T {}", 8, "cannot find the imported type q.Missing"},
            {"parcelable T { int a; String a; }", 30, "the name 'a' is used twice"},
            {"interface T { void a(int b, int b); }", 33, "the name 'b' is used twice"},
            {"interface T { void a(); void a(int b); }", 30, "the name 'a' is used twice"},
            {"parcelable T { int virtual; }", 20, "'virtual' may not be a name"},
            {"parcelable T { int _aidl_x; }", 20, "'_aidl_x' may not be a name"},
            {"union T { int getTag; }", 15, "the name 'getTag' is taken by generated code"},
            {"interface T { void getInterfaceHash(); }", 20,
             "the name 'getInterfaceHash' is taken by generated code"},
            {"parcelable T { void a; }", 16, "a field cannot be void"},
            {"parcelable T { T[] a; }", 12, "type T contains itself"},
            {"union T {}", 7, "a union has at least one field"},
            {"enum T {}", 6, "an enum has at least one enumerator"},
            {"@Backing(type=\"char\") enum T { A }", 1,
             "expected @Backing(type=\"byte\"), \"int\" or \"long\""},
            {"@VintfStability @VintfStability parcelable T {}", 17,
             "annotation @VintfStability is given twice"},
            {"interface T { void a(int[] b); }", 28, "argument 'b' needs in, out or inout"},
            {"interface T { void a(out int b); }", 30, "an argument of type 'int' can only be in"},
            {"interface T { oneway int a(); }", 22, "a oneway method returns void"},
            {"oneway interface T { void a(out int[] b); }", 39,
             "oneway method 'a' cannot have out arguments"},
            {"interface T { void a() = 1; void b(); }", 34,
             "either all methods or none have numbers"},
            {"interface T { void a() = 1; void b() = 1; }", 34, "the number 1 is used twice"},
            {"interface T { void a() = 16777115; }", 20, "a method's number is 16777114 at most"},
    });
}

TEST(Errors, StabilityHasToAgreeWithTheCommandLine) {
    MemoryFiles files{{"p/T.aidl", "package p; parcelable T { p.U u; }"},
                      {"p/U.aidl", "package p; @VintfStability parcelable U {}"}};
    EXPECT_EQ(Generate(files),
              "./p/U.aidl:1:39: error: type U is marked @VintfStability: "
              "--stability vintf is needed\n");
    EXPECT_EQ(RunCommand(files, {"--dumpapi", "--structured", "--stability=vintf", "-I.", "--out",
                                 "d", "p/T.aidl"}),
              "p/T.aidl:1:23: error: type T has to be marked @VintfStability, because of "
              "--stability vintf\n");
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
    };
    for (const auto& [t, u, messages] : kCases) {
        MemoryFiles files{{"p/T.aidl", "package p; " + t}, {"p/U.aidl", "package p; " + u}};
        EXPECT_EQ(Generate(files), messages);
    }
}

TEST(Errors, TwoTypesOfOneFileNameAreRefused) {
    MemoryFiles files{{"p/ITree.aidl", "package p; interface ITree {}"},
                      {"p/Tree.aidl", "package p; parcelable Tree {}"}};
    EXPECT_EQ(RunCommand(files, {"--lang=ndk", "--structured", "-hh", "-oo", "p/ITree.aidl",
                                 "p/Tree.aidl"}),
              "p/Tree.aidl:1:23: error: types ITree and Tree both make a file aidl/p/BnTree.h\n"
              "p/Tree.aidl:1:23: error: types ITree and Tree both make a file aidl/p/BpTree.h\n");
    EXPECT_EQ(files.files.size(), 2u) << "files were written in spite of errors";
}

TEST(Errors, FilesThatCannotBeReadOrWrittenAreReported) {
    MemoryFiles files{{"p/T.aidl", "package p; enum T { A }"}};
    EXPECT_EQ(RunCommand(files, {"--lang=ndk", "--structured", "-hh", "-oo", "p/None.aidl"}),
              "error: p/None.aidl does not exist\n");
    files.writable = false;
    EXPECT_EQ(RunCommand(files, {"--dumpapi", "--structured", "--out=d", "p/T.aidl"}),
              "error: cannot write d/p/T.aidl\n");
}

TEST(Errors, CommandLinesAreChecked) {
    const std::pair<std::vector<std::string_view>, std::string> kCases[] = {
            {{}, "no files are given"},
            {{"a.aidl", "--frobnicate"}, "unknown option --frobnicate"},
            {{"-x", "a.aidl"}, "unknown option -x"},
            {{"--lang=java", "a"}, "the only language is ndk"},
            {{"--structured=yes", "a"}, "--structured takes no value"},
            {{"a", "--stability"}, "--stability needs a value"},
            {{"--stability", "vendor", "a"}, "the only stability is vintf"},
            {{"--version", "0", "a"}, "--version takes a number from 1 on"},
            {{"--version=1x", "a"}, "--version takes a number from 1 on"},
            {{"--version=99999999999", "a"}, "--version takes a number from 1 on"},
            {{"--hash", "abc\"", "a"},
             "--hash takes 40 lower-case hexadecimal digits or notfrozen"},
            {{"--min_sdk_version=29", "a"}, "--min_sdk_version takes 30 or more, or current"},
            {{"--checkapi=same", "a", "b"}, "--checkapi takes equal or compatible"},
            {{"--checkapi=equal", "--structured", "a"}, "--checkapi takes two folders"},
            {{"--dumpapi", "--structured", "a"}, "--out is missing"},
            {{"--lang=ndk", "a", "-hx", "-ox"},
             "--structured is missing: there are only structured types"},
            {{"--structured", "-o", "x", "a"}, "-h is missing"},
            {{"--structured", "-h", "x", "a"}, "-o is missing"},
            {{"--hashapi", "a", "b"}, "--hashapi takes one folder"},
    };
    MemoryFiles files{};
    for (const auto& [arguments, complaint] : kCases)
        EXPECT_EQ(RunCommand(files, arguments), complaint);
}

}  // namespace
}  // namespace zarvo::host::aidl
