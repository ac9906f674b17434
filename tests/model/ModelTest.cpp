#include <cstdlib>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/model/Model.h"
#include "tests/model/Story.h"

namespace zarvo::test {
namespace {

/** Says how many stories are told, unless the environment does. */
class Theory : public testing::Test {
  protected:
    static void SetUpTestSuite() { setenv("RC_PARAMS", AON_MODEL_PARAMS, 0); }
};

TEST_F(Theory, IsWhatTheServiceDoesInEveryStory) {
    rc::detail::checkGTest([] {
        const std::string difference = Difference(*AnyStory());
        if (!difference.empty()) RC_FAIL(difference);
    });
}

/** The service admits one client at a time; its arbitration is made for many. */
TEST_F(Theory, IsHowTheConfigurationsOfManyClientsMergeAndJoin) {
    rc::detail::checkGTest([] {
        const auto configs = *rc::gen::container<std::vector<Config>>(AnyConfig());
        const Config wanted = *AnyConfig();
        aon::SensorConfigMap byHandle;
        for (const Config& config : configs)
            byHandle[static_cast<int64_t>(byHandle.size())] = config;
        Config merged = aon::MergeSensorConfigs(byHandle);
        if (merged.deliveryMode == aon::kDeliveryModeConflict) merged.deliveryMode = 1;
        RC_ASSERT(merged == MergeAll(configs));
        for (const bool running : {true, false}) {
            RC_ASSERT(!aon::FindConflict(merged, wanted, running) ==
                      CanJoin(merged, wanted, running));
        }
    });
}

}  // namespace
}  // namespace zarvo::test
