#include <cutils/trace.h>

#include <mutex>

#include "tests/service/ServiceFixture.h"

namespace {

std::mutex gMutex;
/** Each section as its name, what is in it, and a semicolon. */
std::string gSections;

void Keep(const std::string& text) {
    const std::lock_guard lock(gMutex);
    gSections += text;
}

}  // namespace

// In the place of libcutils's.
void atrace_begin_body(const char* name) {
    Keep(std::string(" ") + name);
}
void atrace_end_body() {
    Keep(";");
}

namespace zarvo::test {
namespace {

using Trace = ServiceFixture;

TEST_F(Trace, HasEveryOperationAndEveryPartOfAnEvent) {
    // A plain word, as on the phone: it is set while nobody else runs.
    atrace_enabled_tags = ATRACE_TAG_CAMERA;
    RemoteClient client(service);
    Run(client, 1, 1);
    aov_event event{};
    stream.Callback()->onCallback(&event);
    client.Stop(1);
    client.Die();
    atrace_enabled_tags = 0;
    const std::lock_guard lock(gMutex);
    EXPECT_EQ(gSections,
              " registerClient; subscribeSensor;"
              " startService aon stream start; aon client onSensorStateChanged;;"
              " aon event aon parse; aon client onAONEvent;;"
              " stopService aon stream stop; aon client onSensorStateChanged;; client died;");
}

}  // namespace
}  // namespace zarvo::test
