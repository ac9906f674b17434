#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zarvo::aon {

/** In the place of a sensor's id: nothing runs, or nothing is subscribed. */
inline constexpr int32_t kNoSensor = -1;

/** The configuration the stream is subscribed with. */
struct SensorConfig {
    int32_t sensorId = 0;
    /** Pixels. */
    int32_t frameWidth = 0;
    int32_t frameHeight = 0;
    /** Frames per second. */
    int32_t fps = 0;
    /** Service types (bits). */
    int32_t serviceType = 0;
    /** 1 is time-based; any other value is the stream's md mode. */
    int32_t deliveryMode = 0;
};

/** One frame size, in pixels, and its rates, in frames per second. */
struct SizeAndSupportRates {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<int32_t> rates;
};

/** What one sensor offers. */
struct AonSensorInfo {
    int32_t sensorId = 0;
    int32_t reserved0 = 0;
    /** A word of the sensor's last capability record; 0 without records. */
    int32_t reserved1 = 0;
    /** The service types (bits) that the sensor supports. */
    int32_t supportMode = 0;
    std::vector<SizeAndSupportRates> sizes;
};

/** "sensorIds:" and each id with a comma behind it. */
std::string toString(const std::vector<int>& sensorIds);

}  // namespace zarvo::aon
