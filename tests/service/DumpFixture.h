#pragma once

#include <unistd.h>

#include "tests/clients/Dump.h"
#include "tests/service/ServiceFixture.h"

namespace zarvo::test {

/** Looks at the service as `dumpsys` does. */
class DumpFixture : public ServiceFixture {
  protected:
    std::string Look(const std::vector<const char*>& args = {},
                     binder_status_t expected = STATUS_OK) {
        return DumpOf(service->asBinder().get(), args, expected);
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
