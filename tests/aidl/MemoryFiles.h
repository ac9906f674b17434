#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/aidl/Compiler.h"
#include "host/aidl/FileSystem.h"

namespace zarvo::host::aidl {

/** Files by path that exist only here; writing can be made to fail. */
class MemoryFiles : public FileSystem {
  public:
    using Map = std::map<std::string, std::string>;

    MemoryFiles(std::initializer_list<Map::value_type> content) : files(content) {}

    Content Read(const std::string& path) override {
        const auto found = files.find(path.starts_with("./") ? path.substr(2) : path);
        if (found == files.end()) return {Status::kMissing, {}};
        return {Status::kOk, found->second};
    }
    bool Write(const std::string& path, std::string_view text) override {
        if (writable) files[path] = text;
        return writable;
    }
    std::vector<std::string> ListAidlFiles(const std::string& folder) override {
        std::vector<std::string> paths;
        for (const auto& [path, text] : files) {
            if (path.starts_with(folder + "/")) paths.push_back(path.substr(folder.size() + 1));
        }
        return paths;
    }

    Map files;
    bool writable = true;
};

/** Runs a command line over files; returns the messages, empty if all went well. */
inline std::string RunCommand(MemoryFiles& files, const std::vector<std::string_view>& arguments,
                              std::string* output = nullptr) {
    const std::variant<Options, std::string> options = ParseOptions(arguments);
    if (options.index() == 1) return std::get<1>(options);
    Diagnostics diagnostics;
    std::string ignored;
    const bool done = RunCompiler(std::get<0>(options), files,
                                  output == nullptr ? ignored : *output, diagnostics);
    return done == diagnostics.HasErrors() ? "result and messages disagree" : diagnostics.Text();
}

/** Generates code for p/T.aidl with the given text. */
inline std::string Generate(MemoryFiles& files) {
    return RunCommand(files,
                      {"--lang=ndk", "--structured", "-I", ".", "-h", "h", "-o", "o", "p/T.aidl"});
}

inline std::string GenerateT(const std::string& text) {
    MemoryFiles files({{"p/T.aidl", text}});
    return Generate(files);
}

}  // namespace zarvo::host::aidl
