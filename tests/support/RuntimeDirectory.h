#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace zarvo::test {

/** The runtime directory of this process and its children, new and empty; it goes with this. */
class RuntimeDirectory {
  public:
    RuntimeDirectory() {
        char created[] = "/tmp/aon-test-XXXXXX";
        path = mkdtemp(created);
        setenv("AON_RUNTIME_DIR", created, 1);
    }
    ~RuntimeDirectory() { std::filesystem::remove_all(path); }
    RuntimeDirectory(const RuntimeDirectory&) = delete;
    RuntimeDirectory& operator=(const RuntimeDirectory&) = delete;

    std::string path;
};

}  // namespace zarvo::test
