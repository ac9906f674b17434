#include <gtest/gtest.h>

#include "host/stream/CameraDevices.h"

namespace zarvo::host {
namespace {

HalLogicalDeviceList* DeviceList() {
    const MtkcamModuleFactory factory = getMtkcamModuleFactory(0x30001);
    return factory == nullptr ? nullptr : static_cast<HalLogicalDeviceList*>(factory());
}

TEST(ModuleHelper, GivesTheSensorsBehindEachDevice) {
    HalLogicalDeviceList* list = DeviceList();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->getSensorIdsOfDevice(5), (std::vector<int>{2, 3}));
    EXPECT_TRUE(list->getSensorIdsOfDevice(6).empty());
    CameraDevices::Instance().SetDevices({{6, {1, 0}}});
    EXPECT_EQ(list->getSensorIdsOfDevice(6), (std::vector<int>{1, 0}));
    EXPECT_TRUE(list->getSensorIdsOfDevice(0).empty());
}

TEST(ModuleHelper, HasOneModuleAndFailsWhenToldTo) {
    EXPECT_EQ(getMtkcamModuleFactory(0x30000), nullptr);
    CameraDevices::Instance().factoryFault.FailCalls(1);
    EXPECT_EQ(DeviceList(), nullptr);
    CameraDevices::Instance().moduleFault.FailCalls(1);
    const MtkcamModuleFactory factory = getMtkcamModuleFactory(0x30001);
    ASSERT_NE(factory, nullptr);
    EXPECT_EQ(factory(), nullptr);
    EXPECT_NE(DeviceList(), nullptr);
}

}  // namespace
}  // namespace zarvo::host
