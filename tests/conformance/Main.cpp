#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <future>
#include <string_view>
#include <thread>

#include "tests/conformance/Client.h"

namespace {

using namespace std::chrono_literals;

constexpr int kMisused = 2;
constexpr int kNoService = 3;
/** How long the service may take to appear. */
constexpr auto kAppears = 10s;

constexpr char kHelp[] =
        "usage: aon_conformance_test [OPTION...]\n"
        "\n"
        "Tests the always-on camera service that is published as\n"
        "vendor.zarvo.hardware.camera.aon.IAONService/default: what it answers, refuses and "
        "tells,\n"
        "and that it gets over clients that die. Takes the place of the service's client, if it\n"
        "has one. Nobody should use the service or open a camera meanwhile. Tests that need a\n"
        "sensor are skipped if the service offers none.\n"
        "\n"
        "Exit status: 0 when all is well, 1 when a test failed, 2 for a bad command line, 3 when\n"
        "the service does not run.\n"
        "\n"
        "Options of the test framework:\n"
        "\n";

/** Whether the service is published within kAppears. Waiting for it can not be ended: after false
 * the process must end without letting go of what it has. */
bool ServiceAppears() {
    std::promise<bool> appeared;
    auto future = appeared.get_future();
    std::thread([promise = std::move(appeared)]() mutable {
        const ndk::SpAIBinder found(AServiceManager_waitForService(conformance::kInstance));
        promise.set_value(found.get() != nullptr);
    }).detach();
    return future.wait_for(kAppears) == std::future_status::ready && future.get();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == "--client") return conformance::PlayRole(argv[2]);
    for (int i = 1; i < argc; ++i)
        if (std::string_view(argv[i]) == "--help") std::fputs(kHelp, stdout);
    testing::InitGoogleTest(&argc, argv);
    if (argc > 1 && std::string_view(argv[1]) != "--help") {
        std::fprintf(stderr, "aon_conformance_test: unknown argument '%s'; see --help\n", argv[1]);
        return kMisused;
    }
    if (argc > 1 || testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    ABinderProcess_startThreadPool();
    if (!ServiceAppears()) {
        std::fputs("aon_conformance_test: the service does not run; see --help\n", stderr);
        std::_Exit(kNoService);
    }
    return RUN_ALL_TESTS();
}
