#include "host/replay/RecordedSensor.h"

#include <algorithm>

namespace zarvo::host {
namespace {

/** The first element for which it holds, or a new one. */
template <typename T, typename Condition>
T& FindOrAdd(std::vector<T>& all, Condition holds) {
    const auto found = std::find_if(all.begin(), all.end(), holds);
    // cppcheck-suppress invalidContainer ; only one of the two is done
    return found == all.end() ? all.emplace_back() : *found;
}

}  // namespace

void OfferConfig(const recording::SensorConfigInfo& config,
                 std::vector<SensorDescription>& sensors) {
    auto& sensor = FindOrAdd(sensors, [&](const auto& one) { return one.id == config.sensorId; });
    sensor.id = config.sensorId;
    auto& size = FindOrAdd(sensor.sizes, [&](const auto& one) {
        return one.width == config.frameWidth && one.height == config.frameHeight;
    });
    size.width = config.frameWidth;
    size.height = config.frameHeight;
    if (std::find(size.rates.begin(), size.rates.end(), config.fps) == size.rates.end()) {
        size.rates.push_back(config.fps);
    }
}

}  // namespace zarvo::host
