#include <cstdio>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/aidl/Compiler.h"
#include "host/aidl/Diagnostics.h"
#include "host/aidl/FileSystem.h"
#include "host/aidl/Options.h"

int main(int argc, char** argv) {
    using namespace zarvo::host::aidl;
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const std::variant<Options, std::string> parsed = ParseOptions(arguments);
    if (const std::string* complaint = std::get_if<std::string>(&parsed)) {
        std::fprintf(stderr, "aidl-ndk: %s\n%s", complaint->c_str(), kUsage.data());
        return 2;
    }
    DiskFileSystem files;
    Diagnostics diagnostics;
    std::string output;
    const bool done = RunCompiler(*std::get_if<Options>(&parsed), files, output, diagnostics);
    std::fputs(output.c_str(), stdout);
    std::fputs(diagnostics.Text().c_str(), stderr);
    return done ? 0 : 1;
}
