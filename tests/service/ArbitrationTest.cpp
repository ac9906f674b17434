#include "service/SensorArbitration.h"

#include <string>

#include <gtest/gtest.h>

namespace zarvo::aon {
namespace {

// Whether one fits at all, the model says.
TEST(Arbitration, NamesTheFirstFieldThatDoesNotFit) {
    const SensorConfigInfo merged{0, 640, 480, 10, 0, 0, 7, 3};
    const struct {
        SensorConfigInfo wanted;
        std::string conflict;
    } cases[] = {
            {{2, 999, 999, 99, 0, 0, 8, 4}, "sensor id 0 2"},
            {{0, 999, 999, 99, 0, 0, 8, 4}, "fps 10 99"},
            {{0, 999, 999, 10, 0, 0, 8, 4}, "frameWidth 640 999"},
            {{0, 640, 999, 10, 0, 0, 8, 4}, "frameHeight 480 999"},
            {{0, 640, 480, 10, 0, 0, 8, 4}, "serviceType 7 8"},
            {{0, 640, 480, 10, 0, 0, 7, 4}, "deliveryMode 3 4"},
    };
    for (const auto& c : cases) {
        const auto conflict = FindConflict(merged, c.wanted, true);
        ASSERT_TRUE(conflict) << c.conflict;
        EXPECT_EQ(std::string(conflict->field) + " " + std::to_string(conflict->merged) + " " +
                          std::to_string(conflict->wanted),
                  c.conflict);
    }
}

}  // namespace
}  // namespace zarvo::aon
