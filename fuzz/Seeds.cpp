// Writes the inputs that fuzzing begins with: `fuzz_seeds ROOT FOLDER`.

#include "fuzz/Seeds.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>

namespace zarvo::fuzz {

namespace fs = std::filesystem;

void SeedFolder::Add(std::string_view fuzzer, std::string_view name, std::string_view bytes) const {
    fs::create_directories(mFolder / fuzzer);
    std::ofstream file(mFolder / fuzzer / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) std::abort();
}

namespace {

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/** The same type under the fuzzer's name, in its package, with its types in place of all others. */
std::string AsT(std::string text) {
    const struct {
        const char *what, *by;
    } changes[] = {
            {"package [a-z.]+;", "package p;"},
            {"import [^;]+;|@VintfStability", ""},
            {"\\b([a-z]+\\.)+(?=[A-Z])", ""},
            {"\\bI(?!Binder)[A-Z]+[a-z]\\w+", "I"},
            {"\\b(Cast|Color|Level)\\b", "E"},
            {"\\b(AON\\w+|\\w+Info|Record\\w+|Picture|Point|Payload|CameraDevice|FaultPoint|Empty)"
             "\\b",
             "U"},
            {"\\b(interface|parcelable|union|enum) \\w+", "$1 T"},
    };
    for (const auto& [what, by] : changes)
        text = std::regex_replace(text, std::regex(what), by);
    return text;
}

void AddAidl(const SeedFolder& seeds, const fs::path& folder) {
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".aidl") continue;
        const std::string name = entry.path().filename().string(), text = Content(entry.path());
        seeds.Add("aidl", name, text);
        // Beside the fuzzer's own types, all alone.
        seeds.Add("aidl", name + "-twice", AsT(text) + '\f' + AsT(text));
    }
}

}  // namespace

void AddTexts(const SeedFolder& seeds, const fs::path& root) {
    for (const char* folder : {"interface/vendor", "host/control/interface", "tests/aidl/packages"})
        AddAidl(seeds, root / folder);
    seeds.Add("properties", "switches",
              "vendor.debug.cameralog.enable=true;;zarvo.aon.hal.mtk_dump_apu=0x1;a=b=c;");
    for (const char* line : {"event 5 2\nstate 0 1\n", "ok \nstart 1 5\n",
                             "01-02 03:04:05.678   326   326 I AONManager: aon manager create\n"}) {
        const std::string text(line);
        seeds.Add("lines", text.substr(0, 2), static_cast<char>(text.size()) + text);
    }
    const char* const lines[] = {
            "sensors",
            "watch\n--types\nfusion,gaze\n--json\n--count\n5",
            "watch\n--save-images=pictures\n--sensor\n1",
            "record\nproblem.aonrec\n--count\n3",
            "show\n--json\nproblem.aonrec",
            "camera\nstorm\n1\n20",
            "scene\ntwo",
            "fault\nstream.start\n--first\n2\n--count\n1",
            "fault\nrecord\noutput-size\n-1",
            "dump\n--json",
            "help\nwatch",
            "--replay\nproblem.aonrec\n--replay-loop",
            "--seed\n7\n--quick\n--role\nclient",
            "--lang=ndk\n--structured\n--stability\nvintf\n--version\n1\n-I.\n-h\nh\n-o\no\nT.aidl",
            "--checkapi=compatible\n--structured\n1\n2",
    };
    for (size_t i = 0; i < std::size(lines); ++i)
        seeds.Add("arguments", std::to_string(i), lines[i]);
}

}  // namespace zarvo::fuzz

int main(int argc, char** argv) {
    using namespace zarvo::fuzz;
    if (argc != 3) return EXIT_FAILURE;
    const SeedFolder seeds(argv[2]);
    AddRecords(seeds);
    AddCalls(seeds);
    AddSessions(seeds);
    AddTexts(seeds, argv[1]);
    return EXIT_SUCCESS;
}
