#include "host/aidl/FileSystem.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace zarvo::host::aidl {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMaxFiles = 10000;
constexpr int kMaxDepth = 32;

}  // namespace

FileSystem::Content DiskFileSystem::Read(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) return {Status::kMissing, {}};
    if (!fs::is_regular_file(status)) return {Status::kFailed, {}};

    std::ifstream file(path, std::ios::binary);
    std::string text(kMaxFileSize + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad() || (!file.eof() && file.fail())) return {Status::kFailed, {}};
    text.resize(static_cast<size_t>(file.gcount()));
    if (text.size() > kMaxFileSize) return {Status::kTooLarge, {}};
    return {Status::kOk, std::move(text)};
}

bool DiskFileSystem::Write(const std::string& path, std::string_view text) {
    std::error_code error;
    const fs::path folder = fs::path(path).parent_path();
    if (!folder.empty()) fs::create_directories(folder, error);
    if (error) return false;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
}

std::vector<std::string> DiskFileSystem::ListAidlFiles(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code error;
    for (fs::recursive_directory_iterator at(folder, error), end;
         !error && at != end && files.size() < kMaxFiles; at.increment(error)) {
        std::error_code statusError;
        if (at.depth() >= kMaxDepth) at.disable_recursion_pending();
        if (at->path().extension() == ".aidl" && at->is_regular_file(statusError)) {
            files.push_back(at->path().lexically_relative(folder).generic_string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace zarvo::host::aidl
