#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include "tests/service/ServiceFixture.h"

namespace zarvo::test {

/** Looks at the service as `dumpsys` does. */
class DumpFixture : public ServiceFixture {
  protected:
    std::string Look(std::vector<const char*> args = {}, binder_status_t expected = STATUS_OK) {
        const int fd = memfd_create("dump", MFD_CLOEXEC);
        EXPECT_EQ(AIBinder_dump(service->asBinder().get(), fd, args.data(),
                                static_cast<uint32_t>(args.size())),
                  expected);
        std::string text(static_cast<size_t>(lseek(fd, 0, SEEK_END)), '\0');
        EXPECT_EQ(pread(fd, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
        close(fd);
        return text;
    }
    static void ExpectParts(const std::string& text, const std::vector<std::string>& parts) {
        for (const std::string& part : parts)
            EXPECT_NE(text.find(part), std::string::npos) << part << " is not in\n" << text;
    }
    void Deliver(uint32_t serviceType) {
        const auto event = std::make_unique<aov_event>();
        event->serviceType = serviceType;
        stream.Callback()->onCallback(event.get());
    }

    const std::string pid = "pid " + std::to_string(getpid());
};

}  // namespace zarvo::test
