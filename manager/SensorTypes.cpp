#include "manager/SensorTypes.h"

namespace zarvo::aon {

std::string toString(const std::vector<int>& sensorIds) {
    std::string text = "sensorIds:";
    for (const int id : sensorIds)
        text += std::to_string(id) + ",";
    return text;
}

}  // namespace zarvo::aon
