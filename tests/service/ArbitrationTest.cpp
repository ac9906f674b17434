#include "service/SensorArbitration.h"

#include <string>

#include <gtest/gtest.h>

namespace zarvo::aon {
namespace {

SensorConfigInfo Config(int sensorId, int width, int height, int fps, int types, int mode) {
    SensorConfigInfo config;
    config.sensorId = sensorId;
    config.frameWidth = width;
    config.frameHeight = height;
    config.fps = fps;
    config.serviceType = types;
    config.deliveryMode = mode;
    return config;
}

TEST(Arbitration, NamesTheFirstFieldThatDoesNotFit) {
    const SensorConfigInfo merged = Config(0, 640, 480, 10, 7, 3);
    struct Case {
        SensorConfigInfo wanted;
        const char* strict;
        const char* lenient;
    };
    const Case cases[] = {
            {Config(0, 640, 480, 10, 2, 1), "", ""},
            {Config(0, 1, 1, 1, 0, 3), "", ""},
            {Config(2, 999, 999, 99, 8, 4), "sensor id 0 2", "sensor id 0 2"},
            {Config(0, 999, 999, 99, 8, 4), "fps 10 99", ""},
            {Config(0, 999, 999, 10, 8, 4), "frameWidth 640 999", ""},
            {Config(0, 640, 999, 10, 8, 4), "frameHeight 480 999", ""},
            {Config(0, 640, 480, 10, 8, 4), "serviceType 7 8", ""},
            {Config(0, 640, 480, 10, 7, 4), "deliveryMode 3 4", ""},
    };
    const auto text = [](const std::optional<ConfigConflict>& conflict) {
        if (!conflict) return std::string();
        return std::string(conflict->field) + " " + std::to_string(conflict->merged) + " " +
               std::to_string(conflict->wanted);
    };
    for (const Case& c : cases) {
        EXPECT_EQ(text(FindConflict(merged, c.wanted, true)), c.strict);
        EXPECT_EQ(text(FindConflict(merged, c.wanted, false)), c.lenient);
    }
    // Nothing is subscribed: anything may come. A mode that is no mode never joins a stream.
    EXPECT_FALSE(FindConflict(Config(-1, 0, 0, 0, 0, 0), cases[2].wanted, true).has_value());
    EXPECT_EQ(text(FindConflict(Config(0, 9, 9, 9, 9, 1), Config(0, 9, 9, 9, 9, -1), true)),
              "deliveryMode 1 -1");
}

}  // namespace
}  // namespace zarvo::aon
