#include "host/ctl/Images.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace zarvo::host::ctl {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;

/** More than any sensor has, and what viewers take. */
constexpr int32_t kMostPixels = 16384;

/** The result with this key, if it holds that alternative; else null. */
template <AONResultValue::Tag kTag>
auto Find(const AONCallBackInfo& info, int32_t key) {
    const auto found =
            std::find_if(info.results.begin(), info.results.end(), [key](const AONResult& result) {
                return result.key == key && result.value.getTag() == kTag;
            });
    return found == info.results.end() ? nullptr : &found->value.template get<kTag>();
}

bool IsSide(const int32_t* pixels) {
    return pixels != nullptr && *pixels > 0 && *pixels <= kMostPixels;
}

bool Complain(const char* what, const std::string& path) {
    std::fprintf(stderr, "aonctl: cannot %s %s: %s\n", what, path.c_str(), std::strerror(errno));
    return false;
}

bool WriteAll(int file, std::span<const uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes = bytes.subspan(static_cast<size_t>(written));
    }
    return true;
}

}  // namespace

EventImage FindImage(const AONCallBackInfo& info) {
    using Tag = AONResultValue::Tag;
    const auto* const frame = Find<Tag::intValue>(info, AONResult::RESULT_KEY_FRAME_ID);
    EventImage found;
    if (frame == nullptr) {
        found.error = "its event has no number";
        return found;
    }
    char name[24];
    std::snprintf(name, sizeof(name), "frame-%06" PRIu32, static_cast<uint32_t>(*frame));
    found.name = name;
    const auto* const data = Find<Tag::byteArray>(info, AONResult::RESULT_KEY_IMAGE_DATA);
    const auto* const width = Find<Tag::intValue>(info, AONResult::RESULT_KEY_IMAGE_WIDTH);
    const auto* const height = Find<Tag::intValue>(info, AONResult::RESULT_KEY_IMAGE_HEIGHT);
    const auto* const stride = Find<Tag::intValue>(info, AONResult::RESULT_KEY_IMAGE_STRIDE);
    if (data == nullptr) {
        found.error = "its event has no picture";
    } else if (!IsSide(width) || !IsSide(height) || !IsSide(stride) || *width > *stride) {
        found.error = "its size is wrong";
    } else if (data->size() < static_cast<size_t>(*stride) * static_cast<size_t>(*height)) {
        found.error = "it is cut short";
    } else {
        found.image = {static_cast<uint32_t>(*width), static_cast<uint32_t>(*height), *stride,
                       std::span(*data)};
    }
    return found;
}

bool ImageSaver::MakeDirectory() const {
    if (mkdir(mDirectory.c_str(), 0700) == 0) return true;
    const int error = errno;
    struct stat status {};
    const bool isThere = error == EEXIST && stat(mDirectory.c_str(), &status) == 0;
    if (isThere && S_ISDIR(status.st_mode)) return true;
    errno = error == EEXIST ? ENOTDIR : error;
    return Complain("save into", mDirectory);
}

bool ImageSaver::Save(const AONCallBackInfo& info) const {
    EventImage found = FindImage(info);
    std::vector<uint8_t> bytes;
    if (found.error.empty()) bytes = EncodePng(found.image, found.error);
    if (!found.error.empty()) {
        std::fprintf(stderr, "aonctl: %s is not saved: %s\n",
                     found.name.empty() ? "a picture" : found.name.c_str(), found.error.c_str());
        return true;
    }
    return Write(bytes, mDirectory + '/' + found.name + ".png");
}

bool ImageSaver::Write(std::span<const uint8_t> bytes, const std::string& path) const {
    std::string draft = mDirectory + "/.frame-XXXXXX";
    const int file = mkostemp(draft.data(), O_CLOEXEC);
    if (file < 0) return Complain("write", path);
    bool done = WriteAll(file, bytes);
    // Only the first failure's reason is told.
    int error = errno;
    if (close(file) != 0 && done) {
        done = false;
        error = errno;
    }
    if (done && rename(draft.c_str(), path.c_str()) == 0) return true;
    if (done) error = errno;
    unlink(draft.c_str());
    errno = error;
    return Complain("write", path);
}

}  // namespace zarvo::host::ctl
