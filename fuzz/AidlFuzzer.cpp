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

/** Whether a newer text of the type may follow: what is equal is compatible. */
void CheckChange(MemoryFiles& files, std::string_view newer) {
    files.files["n/p/T.aidl"] = newer;
    for (const char* file : {"/p/E.aidl", "/p/I.aidl", "/p/U.aidl"})
        files.files[std::string("n") + file] = files.files[std::string("s") + file];
    const auto isNoChange = [&](std::string_view check) {
        return RunCommand(files, {check, "--structured", "s", "n"}).empty();
    };
    if (isNoChange("--checkapi=equal") && !isNoChange("--checkapi=compatible")) std::abort();
    std::string hash;
    if (!RunCommand(files, {"--hashapi", "n"}, &hash).empty() || hash.size() != 41) std::abort();
}

}  // namespace

/** The input is the text of s/p/T.aidl, beside which there are a parcelable U, an enum and an
 * interface; and behind a form feed, if there is one, a newer text. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view input = zarvo::fuzz::Text({data, size});
    const std::string_view text = input.substr(0, input.find('\f'));
    MemoryFiles files{{"s/p/T.aidl", std::string(text)},
                      {"s/p/U.aidl", "package p; parcelable U { int a = 1; String s; }"},
                      {"s/p/E.aidl", "package p; @Backing(type=\"int\") enum E { A = 1, B }"},
                      {"s/p/I.aidl", "package p; interface I { void call(in I other); }"}};
    const std::string messages = RunCommand(
            files, {"--lang=ndk", "--structured", "-I", "s", "-h", "h", "-o", "o", "s/p/T.aidl"});
    if (messages.empty()) {
        CheckApi(files);
        if (text.size() < input.size()) CheckChange(files, input.substr(text.size() + 1));
    } else if (!messages.starts_with("s/p/T.aidl:") && !messages.starts_with("error: ")) {
        std::abort();
    }
    return 0;
}
