#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host::aidl {

/** A file larger than this is not read. */
constexpr size_t kMaxFileSize = 256 * 1024;

/** The compiler's way to files; tests and fuzzers give it files that exist nowhere else. */
class FileSystem {
  public:
    enum class Status { kOk, kMissing, kTooLarge, kFailed };
    struct Content {
        Status status = Status::kMissing;
        /** Set if status is kOk. */
        std::string text;
    };

    virtual ~FileSystem() = default;
    virtual Content Read(const std::string& path) = 0;
    /** Writes a file and the folders it lies in; false if that fails. */
    virtual bool Write(const std::string& path, std::string_view text) = 0;
    /**
     * The paths of all *.aidl files below a folder, relative to it, in byte order; at most
     * 10,000, from folders nested at most 32 deep. Empty if there is no such folder.
     */
    virtual std::vector<std::string> ListAidlFiles(const std::string& folder) = 0;
};

/** The files of this machine. */
class DiskFileSystem : public FileSystem {
  public:
    Content Read(const std::string& path) override;
    bool Write(const std::string& path, std::string_view text) override;
    std::vector<std::string> ListAidlFiles(const std::string& folder) override;
};

}  // namespace zarvo::host::aidl
