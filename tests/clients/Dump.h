#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <android/binder_ibinder.h>
#include <gtest/gtest.h>

namespace zarvo::test {

/** What `dumpsys` with these arguments shows of the service. */
inline std::string DumpOf(AIBinder* service, std::vector<const char*> args = {},
                          binder_status_t expected = STATUS_OK) {
    const int fd = memfd_create("dump", MFD_CLOEXEC);
    EXPECT_EQ(AIBinder_dump(service, fd, args.data(), static_cast<uint32_t>(args.size())),
              expected);
    std::string text(static_cast<size_t>(lseek(fd, 0, SEEK_END)), '\0');
    EXPECT_EQ(pread(fd, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    close(fd);
    return text;
}

}  // namespace zarvo::test
