#include "host/aidl/Compiler.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "host/aidl/ApiDump.h"
#include "host/aidl/ApiHash.h"
#include "host/aidl/Checker.h"
#include "host/aidl/NdkPrinter.h"
#include "host/aidl/Program.h"

namespace zarvo::host::aidl {

namespace {

/** The files to be written, and the types that they come from. */
class Output {
  public:
    explicit Output(Diagnostics& diagnostics) : mDiagnostics(diagnostics) {}

    void Add(const std::string& folder, const std::string& path, std::string text,
             const Definition& from) {
        const auto [found, isNew] =
                mFiles.try_emplace(folder + "/" + path, File{std::move(text), &from});
        if (isNew) return;
        mDiagnostics.Error(from.document->path, from.position,
                           "types " + found->second.from->name + " and " + from.name +
                                   " both make a file " + path);
    }

    bool Write(FileSystem& files) const {
        if (mDiagnostics.HasErrors()) return false;
        for (const auto& [path, file] : mFiles) {
            if (!files.Write(path, file.text)) mDiagnostics.Error("cannot write " + path);
        }
        return !mDiagnostics.HasErrors();
    }

  private:
    struct File {
        std::string text;
        const Definition* from;
    };

    Diagnostics& mDiagnostics;
    std::map<std::string, File> mFiles;
};

bool Generate(const Options& options, const Program& program, FileSystem& files,
              Diagnostics& diagnostics) {
    Output output(diagnostics);
    for (const Definition* definition : program.Inputs()) {
        NdkCode code = PrintNdk(*definition, {options.version, options.hash});
        for (NdkCode::File& header : code.headers) {
            output.Add(options.headerFolder, header.path, std::move(header.text), *definition);
        }
        output.Add(options.sourceFolder, code.source.path, std::move(code.source.text),
                   *definition);
    }
    return output.Write(files);
}

bool Dump(const Options& options, const Program& program, FileSystem& files,
          Diagnostics& diagnostics) {
    Output output(diagnostics);
    for (const Definition* definition : program.Inputs()) {
        output.Add(options.dumpFolder, AidlPath(definition->QualifiedName()),
                   DumpApi(*definition->document), *definition);
    }
    return output.Write(files);
}

bool LoadAndCheck(Program& program, const std::vector<std::string>& paths, const Options& options,
                  Diagnostics& diagnostics) {
    return program.Load(paths) &&
           CheckProgram(program, CheckOptions{options.vintfStability}, diagnostics);
}

/** Loads all files of a version's folder. */
bool LoadFolder(Program& program, const std::string& folder, const Options& options,
                FileSystem& files, Diagnostics& diagnostics) {
    std::vector<std::string> paths;
    for (const std::string& path : files.ListAidlFiles(folder)) {
        paths.push_back(folder + "/" + path);
    }
    if (paths.empty()) diagnostics.Error("no .aidl files in " + folder);
    return !paths.empty() && LoadAndCheck(program, paths, options, diagnostics);
}

std::vector<std::string> WithRoot(const std::string& root, std::vector<std::string> roots) {
    roots.insert(roots.begin(), root);
    return roots;
}

bool Check(const Options& options, FileSystem& files, Diagnostics& diagnostics) {
    const std::string& olderFolder = options.files[0];
    const std::string& newerFolder = options.files[1];
    Program older(files, WithRoot(olderFolder, options.importRoots), diagnostics);
    Program newer(files, WithRoot(newerFolder, options.importRoots), diagnostics);
    return LoadFolder(older, olderFolder, options, files, diagnostics) &&
           LoadFolder(newer, newerFolder, options, files, diagnostics) &&
           CheckApi(older, newer, options.checkLevel, diagnostics);
}

bool Hash(const Options& options, FileSystem& files, std::string& output,
          Diagnostics& diagnostics) {
    const uint32_t version = options.version == 0 ? 1 : options.version;
    const std::optional<std::string> hash = HashApi(files, options.files[0], version, diagnostics);
    if (hash) output = *hash + "\n";
    return hash.has_value();
}

}  // namespace

bool RunCompiler(const Options& options, FileSystem& files, std::string& output,
                 Diagnostics& diagnostics) {
    if (options.mode == Options::Mode::kHashApi) return Hash(options, files, output, diagnostics);
    if (options.mode == Options::Mode::kCheckApi) return Check(options, files, diagnostics);
    Program program(files, options.importRoots, diagnostics);
    if (!LoadAndCheck(program, options.files, options, diagnostics)) return false;
    return options.mode == Options::Mode::kDumpApi ? Dump(options, program, files, diagnostics)
                                                   : Generate(options, program, files, diagnostics);
}

}  // namespace zarvo::host::aidl
