#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/mtkcam/HalLogicalDeviceList.h"

namespace zarvo::test {

/**
 * The platform's module helper as a test dictates it: `getMtkcamModuleFactory` answers from here
 * in every program that links scripted_stream. One per process; any thread.
 */
class ScriptedModules : public HalLogicalDeviceList {
  public:
    static ScriptedModules& Instance();

    /** Camera device -> its sensors. */
    void SetDevices(std::map<int, std::vector<int>> devices) {
        const std::lock_guard lock(mMutex);
        mDevices = std::move(devices);
    }
    /** Lets getMtkcamModuleFactory() give null. */
    void SetNoFactory(bool none) { mNoFactory = none; }
    /** Lets the factory give null. */
    void SetNoModule(bool none) { mNoModule = none; }
    /** The ids that getMtkcamModuleFactory() was asked for. */
    std::vector<uint32_t> AskedModules() const;

    std::vector<int> getSensorIdsOfDevice(int instanceId) override;

    /** What getMtkcamModuleFactory() answers. */
    MtkcamModuleFactory FactoryOf(uint32_t moduleId);

  private:
    static void* Module();

    std::atomic<bool> mNoFactory = false, mNoModule = false;
    mutable std::mutex mMutex;
    std::map<int, std::vector<int>> mDevices;
    std::vector<uint32_t> mAskedModules;
};

}  // namespace zarvo::test
