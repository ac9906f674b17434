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
    config.reserved0 = 11;
    config.reserved1 = 12;
    config.serviceType = types;
    config.deliveryMode = mode;
    return config;
}

SensorConfigInfo Merged(int sensorId, int width, int height, int fps, int types, int mode) {
    SensorConfigInfo config = Config(sensorId, width, height, fps, types, mode);
    config.reserved0 = config.reserved1 = 0;
    return config;
}

TEST(Arbitration, MergesDeliveryModes) {
    const int cases[][3] = {{1, 1, 1},  {3, 3, 3}, {1, 3, 3},   {3, 1, 3},  {2, 3, -1},
                            {0, 2, -1}, {0, 1, 0}, {-1, 1, -1}, {-1, 3, -1}};
    for (const auto& [a, b, merged] : cases)
        EXPECT_EQ(MergeDeliveryMode(a, b), merged) << a << b;
}

TEST(Arbitration, MergesConfigurationsInTheOrderOfTheirHandles) {
    EXPECT_EQ(MergeSensorConfigs({}), Merged(-1, 0, 0, 0, 0, 0));
    EXPECT_EQ(MergeSensorConfigs(
                      {{1, Config(0, 320, 240, 10, 1, 1)}, {2, Config(0, 640, 480, 5, 6, 3)}}),
              Merged(0, 640, 480, 10, 7, 3));
    EXPECT_EQ(MergeSensorConfigs({{7, Config(4, 1, 9, 2, 8, 2)},
                                  {3, Config(-1, 5, 2, 1, 1, 1)},
                                  {9, Config(6, 2, 3, 3, 2, 3)},
                                  {11, Config(6, -1, -1, -1, 0, 1)}}),
              Merged(4, 5, 9, 3, 11, -1));
    EXPECT_EQ(ForStream(Merged(4, 5, 9, 3, 11, -1)), Merged(4, 5, 9, 3, 11, 1));
    EXPECT_EQ(ForStream(Merged(4, 5, 9, 3, 11, 2)), Merged(4, 5, 9, 3, 11, 2));
}

TEST(Arbitration, NamesTheFirstFieldThatDoesNotFit) {
    const SensorConfigInfo merged = Merged(0, 640, 480, 10, 7, 3);
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
    EXPECT_FALSE(FindConflict(Merged(-1, 0, 0, 0, 0, 0), cases[2].wanted, true).has_value());
    EXPECT_EQ(text(FindConflict(Merged(0, 9, 9, 9, 9, 1), Config(0, 9, 9, 9, 9, -1), true)),
              "deliveryMode 1 -1");
}

TEST(Arbitration, FindsTheConfigurationThatASensorOffers) {
    const AonSensorInfo sensor{2, 0, 0, 0x3F, {{640, 480, {5, 10}}, {320, 240, {30}}}};
    EXPECT_TRUE(Supports(sensor, Config(2, 640, 480, 10, 15, 1)));
    EXPECT_TRUE(Supports(sensor, Config(2, 320, 240, 30, 0x3F, 0)));
    EXPECT_FALSE(Supports(sensor, Config(1, 640, 480, 10, 15, 1)));
    EXPECT_FALSE(Supports(sensor, Config(2, 640, 480, 30, 15, 1)));
    EXPECT_FALSE(Supports(sensor, Config(2, 640, 240, 30, 15, 1)));
    EXPECT_FALSE(Supports(sensor, Config(2, 640, 480, 10, 0x40, 1)));
}

}  // namespace
}  // namespace zarvo::aon
