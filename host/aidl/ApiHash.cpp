#include "host/aidl/ApiHash.h"

#include <vector>

#include "host/aidl/Sha1.h"

namespace zarvo::host::aidl {

std::optional<std::string> HashApi(FileSystem& files, const std::string& folder, uint32_t version,
                                   Diagnostics& diagnostics) {
    const std::vector<std::string> paths = files.ListAidlFiles(folder);
    if (paths.empty()) {
        diagnostics.Error("no .aidl files in " + folder);
        return std::nullopt;
    }
    std::string list;
    for (const std::string& path : paths) {
        const FileSystem::Content content = files.Read(folder + "/" + path);
        if (content.status != FileSystem::Status::kOk) {
            diagnostics.Error("cannot read " + folder + "/" + path);
            return std::nullopt;
        }
        list += Sha1Hex(content.text) + "  ./" + path + "\n";
    }
    list += version == 1 ? "latest-version" : std::to_string(version - 1);
    return Sha1Hex(list + "\n");
}

}  // namespace zarvo::host::aidl
