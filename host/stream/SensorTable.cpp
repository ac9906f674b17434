#include "host/stream/SensorTable.h"

#include <utility>

namespace zarvo::host {
namespace {

aov_sensor_info Size(int32_t width, int32_t height, int32_t info, std::vector<int32_t> rates) {
    aov_sensor_info size{};
    size.width = width;
    size.height = height;
    size.info = info;
    size.rates = std::move(rates);
    return size;
}

}  // namespace

std::vector<SensorDescription> DefaultSensors() {
    const std::vector<int32_t> all{1, 3, 5, 10, 15, 30};
    return {
            {.id = 0, .mode = 0x3F, .sizes = {Size(640, 480, 1, all), Size(320, 240, 2, all)}},
            {.id = 1,
             .mode = 0x0F,
             .sizes = {Size(640, 480, 1, {1, 3, 5, 10}), Size(320, 240, 3, {5, 10, 15})}},
            {.id = 2, .mode = 0x0F, .sizes = {Size(480, 360, 4, {1, 5, 15})}},
            {.id = 3, .mode = 0x03, .sizes = {Size(320, 240, 2, {1, 3, 5})}},
    };
}

}  // namespace zarvo::host
