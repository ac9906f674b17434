// The AIDL generator: any text ends in code, or in messages about it. What is accepted has an API
// that is accepted, too, is dumped as it was, and is no change of itself.

#include <cstdlib>
#include <string>

#include "fuzz/Input.h"
#include "tests/aidl/MemoryFiles.h"

namespace {

using namespace zarvo::host::aidl;

/** Dumps the API of all that lies below a folder. */
std::string Dump(MemoryFiles& files, const std::string& from, const std::string& to) {
    return RunCommand(files,
                      {"--dumpapi", "--structured", "-I", from, "--out", to, from + "/p/E.aidl",
                       from + "/p/I.aidl", from + "/p/T.aidl", from + "/p/U.aidl"});
}

void CheckApi(MemoryFiles& files) {
    if (!Dump(files, "s", "d").empty() || !Dump(files, "d", "e").empty()) std::abort();
    if (files.files["d/p/T.aidl"] != files.files["e/p/T.aidl"]) std::abort();
    const std::string messages = RunCommand(files, {"--checkapi=equal", "--structured", "s", "d"});
    if (!messages.empty()) std::abort();
}

}  // namespace

/** The input is the text of s/p/T.aidl, beside which there are a parcelable U, an enum and an
 * interface. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    MemoryFiles files{{"s/p/T.aidl", std::string(zarvo::fuzz::Text({data, size}))},
                      {"s/p/U.aidl", "package p; parcelable U { int a = 1; String s; }"},
                      {"s/p/E.aidl", "package p; @Backing(type=\"int\") enum E { A = 1, B }"},
                      {"s/p/I.aidl", "package p; interface I { void call(in I other); }"}};
    const std::string messages = RunCommand(
            files, {"--lang=ndk", "--structured", "-I", "s", "-h", "h", "-o", "o", "s/p/T.aidl"});
    if (messages.empty()) {
        CheckApi(files);
    } else if (!messages.starts_with("s/p/T.aidl:") && !messages.starts_with("error: ")) {
        std::abort();
    }
    return 0;
}
