#include <gtest/gtest.h>

#include <string>

#include "tests/aidl/MemoryFiles.h"

namespace zarvo::host::aidl {
namespace {

struct Case {
    const char* text;
    const char* message;  // after "p/T.aidl:"
};

std::string Message(const std::string& text) {
    const std::string messages = GenerateT(text);
    return messages.substr(0, messages.find('\n'));
}

void ExpectMessages(std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(Message(c.text), "p/T.aidl:" + std::string(c.message)) << c.text;
    }
}

TEST(Errors, SyntaxErrorsNameTheirPlace) {
    ExpectMessages({
            {"", "1:1: error: expected 'package', not the end of the file"},
            {"parcelable T {}", "1:1: error: expected 'package', not 'parcelable'"},
            {"package p\nparcelable T {}", "2:1: error: expected ';', not 'parcelable'"},
            {"package p.;", "1:11: error: expected a name after '.', not ';'"},
            {"package p; import q.R", "1:22: error: expected ';', not the end of the file"},
            {"package p;\n  parcelable T {\n\tint a\n}", "4:1: error: expected ';', not '}'"},
            {"package p; class T {}",
             "1:12: error: expected 'interface', 'parcelable', 'union' or 'enum', not 'class'"},
            {"package p; oneway parcelable T {}",
             "1:19: error: expected 'interface', not 'parcelable'"},
            {"package p; parcelable T { int a; ",
             "1:34: error: expected '}', not the end of the file"},
            {"package p; /* half", "1:12: error: comment without an end"},
            {"package p; /*/", "1:12: error: comment without an end"},
            {"package p; \x01", "1:12: error: character that no AIDL file holds here"},
            {"package p; parcelable T { String s = \"half; }",
             "1:38: error: a literal ends on its line and holds printable ASCII characters only"},
            {"package p; parcelable T { String s = \"a\\n\"; }",
             "1:38: error: escapes are not supported"},
            {"package p; parcelable T { int a = ; }",
             "1:35: error: expected a constant expression, not ';'"},
            {"package p; interface T { void a(int); }",
             "1:36: error: expected the argument's name, not ')'"},
            {"package p; interface T { void a() = 1L; }",
             "1:37: error: expected the method's number in decimal digits, not '1L'"},
            {"package p; @Backing(type=int) enum T { A }",
             "1:26: error: expected a string, true or false"},
            {"package p; parcelable T {} parcelable U {}",
             "1:28: error: only one type per file is supported"},
    });
}

TEST(Errors, WhatIsNotSupportedIsRefusedByName) {
    ExpectMessages({
            {"package p; parcelable T;",
             "1:24: error: a type without a body (unstructured parcelable) is not supported"},
            {"package p; parcelable T<U> {}", "1:24: error: generic types are not supported"},
            {"package p; parcelable T { parcelable U {} }",
             "1:27: error: nested types are not supported"},
            {"package p; parcelable T { Map<int, int> m; }",
             "1:30: error: generic type 'Map' is not supported, only List<T> is"},
            {"package p; parcelable T { List<List<int>> m; }",
             "1:36: error: lists of lists or arrays are not supported"},
            {"package p; parcelable T { int[][] m; }",
             "1:32: error: arrays of arrays or lists are not supported"},
            {"package p; parcelable T { int[3] m; }",
             "1:31: error: arrays of fixed size are not supported"},
            {"package p; parcelable T { IBinder b; }",
             "1:27: error: type 'IBinder' is not supported"},
            {"package p; parcelable T { List<int> b; }",
             "1:32: error: a list holds Strings or parcelables; use 'int[]'"},
            {"package p; interface T { void a(in T[] t); }",
             "1:36: error: arrays and lists of 'T' are not supported"},
            {"package p; parcelable T { @nullable String b; }",
             "1:37: error: @nullable is supported for interfaces only"},
            {"package p; @FixedSize parcelable T {}",
             "1:12: error: annotation @FixedSize is not supported here"},
            {"package p; parcelable T { const float X = 1.0; }",
             "1:33: error: a constant is a byte, int, long or String"},
    });
}

TEST(Errors, RulesBeyondSyntaxAreChecked) {
    ExpectMessages({
            {"package p; parcelable U {}", "1:23: error: type p.U has to lie in a file p/U.aidl"},
            {"package q; parcelable T {}", "1:23: error: type q.T has to lie in a file q/T.aidl"},
            {"package p; parcelable T { Unknown u; }",
             "1:27: error: cannot find the type 'Unknown'"},
            {"package p; import q.Missing; parcelable T {}",
             "1:19: error: cannot find the imported type q.Missing"},
            {"package p; parcelable T { int a; String a; }",
             "1:41: error: the name 'a' is used twice"},
            {"package p; interface T { void a(int b, int b); }",
             "1:44: error: the name 'b' is used twice"},
            {"package p; interface T { void a(); void a(int b); }",
             "1:41: error: the name 'a' is used twice"},
            {"package p; parcelable T { int virtual; }",
             "1:31: error: 'virtual' may not be a name"},
            {"package p; parcelable T { int _aidl_x; }",
             "1:31: error: '_aidl_x' may not be a name"},
            {"package p; union T { int getTag; }",
             "1:26: error: the name 'getTag' is taken by generated code"},
            {"package p; interface T { void getInterfaceHash(); }",
             "1:31: error: the name 'getInterfaceHash' is taken by generated code"},
            {"package p; parcelable T { void a; }", "1:27: error: a field cannot be void"},
            {"package p; parcelable T { T[] a; }", "1:23: error: type T contains itself"},
            {"package p; union T {}", "1:18: error: a union has at least one field"},
            {"package p; enum T {}", "1:17: error: an enum has at least one enumerator"},
            {"package p; @Backing(type=\"char\") enum T { A }",
             "1:12: error: expected @Backing(type=\"byte\"), \"int\" or \"long\""},
            {"package p; @VintfStability @VintfStability parcelable T {}",
             "1:28: error: annotation @VintfStability is given twice"},
            {"package p; interface T { void a(int[] b); }",
             "1:39: error: argument 'b' needs in, out or inout"},
            {"package p; interface T { void a(out int b); }",
             "1:41: error: an argument of type 'int' can only be in"},
            {"package p; interface T { oneway int a(); }",
             "1:33: error: a oneway method returns void"},
            {"package p; oneway interface T { void a(out int[] b); }",
             "1:50: error: oneway method 'a' cannot have out arguments"},
            {"package p; interface T { void a() = 1; void b(); }",
             "1:45: error: either all methods or none have numbers"},
            {"package p; interface T { void a() = 1; void b() = 1; }",
             "1:45: error: the number 1 is used twice"},
            {"package p; interface T { void a() = 16777115; }",
             "1:31: error: a method's number is 16777114 at most"},
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

TEST(Errors, TypesThatContainEachOtherAreRefusedAcrossFiles) {
    MemoryFiles files{{"p/T.aidl", "package p; parcelable T { U u; }"},
                      {"p/U.aidl", "package p; union U { int i; T[] t; }"}};
    EXPECT_EQ(Generate(files), "p/T.aidl:1:23: error: type T contains itself\n");
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
    struct CommandLine {
        std::vector<std::string_view> arguments;
        const char* complaint;
    };
    const CommandLine kCases[] = {
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
    for (const CommandLine& c : kCases) {
        const std::variant<Options, std::string> options = ParseOptions(c.arguments);
        ASSERT_EQ(options.index(), 1u) << c.complaint;
        EXPECT_EQ(std::get<1>(options), c.complaint);
    }
}

}  // namespace
}  // namespace zarvo::host::aidl
