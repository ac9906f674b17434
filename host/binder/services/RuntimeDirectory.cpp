#include "host/binder/services/RuntimeDirectory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "host/binder/BinderLog.h"

namespace zarvo::host {

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string ChoosePath() {
    if (std::string path = Variable("AON_RUNTIME_DIR"); !path.empty()) return path;
    if (const std::string user = Variable("XDG_RUNTIME_DIR"); !user.empty()) return user + "/aon";
    return "/tmp/aon-" + std::to_string(getuid());
}

}  // namespace

std::optional<RuntimeDirectory> RuntimeDirectory::Open(Fault* fault) {
    const std::string path = ChoosePath();
    struct stat found {};
    *fault = Fault::kSystem;
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        BINDER_LOGE("cannot make the runtime directory %s: %s", path.c_str(), strerror(errno));
    } else if (lstat(path.c_str(), &found) != 0) {
        BINDER_LOGE("cannot look at the runtime directory %s: %s", path.c_str(), strerror(errno));
    } else if (!S_ISDIR(found.st_mode)) {
        BINDER_LOGE("the runtime directory %s is not a directory", path.c_str());
    } else if (found.st_uid != geteuid()) {
        BINDER_LOGE("the runtime directory %s belongs to another user", path.c_str());
        *fault = Fault::kForeign;
    } else {
        *fault = Fault::kNone;
        return RuntimeDirectory(path);
    }
    return std::nullopt;
}

std::string RuntimeDirectory::SocketPath(const std::string& instance) const {
    std::string name = instance;
    std::replace(name.begin(), name.end(), '/', '_');
    return mPath + '/' + name;
}

std::string RuntimeDirectory::TemporaryPath(const std::string& instance) const {
    // As long as the path it will have, so that both fit a socket's address or neither does.
    const size_t length = SocketPath(instance).size() - mPath.size() - 1;
    std::string name = "." + std::to_string(getpid());
    name.resize(std::max(length, name.size()), '.');
    return mPath + '/' + name;
}

FileDescriptor RuntimeDirectory::Lock() const {
    FileDescriptor directory(open(mPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.IsOpen()) return directory;
    int result = 0;
    do {
        result = flock(directory.Get(), LOCK_EX);
    } while (result != 0 && errno == EINTR);
    return result == 0 ? std::move(directory) : FileDescriptor();
}

}  // namespace zarvo::host
