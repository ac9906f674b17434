#include "tests/support/ScriptedModules.h"

MtkcamModuleFactory getMtkcamModuleFactory(uint32_t moduleId) {
    return zarvo::test::ScriptedModules::Instance().FactoryOf(moduleId);
}

namespace zarvo::test {

ScriptedModules& ScriptedModules::Instance() {
    static auto* const modules = new ScriptedModules();
    return *modules;
}

std::vector<uint32_t> ScriptedModules::AskedModules() const {
    const std::lock_guard lock(mMutex);
    return mAskedModules;
}

std::vector<int> ScriptedModules::getSensorIdsOfDevice(int instanceId) {
    const std::lock_guard lock(mMutex);
    const auto found = mDevices.find(instanceId);
    return found == mDevices.end() ? std::vector<int>{} : found->second;
}

MtkcamModuleFactory ScriptedModules::FactoryOf(uint32_t moduleId) {
    const std::lock_guard lock(mMutex);
    mAskedModules.push_back(moduleId);
    const bool known = moduleId == MTKCAM_MODULE_ID_HAL_LOGICAL_DEVICE_LIST;
    return known && !mNoFactory ? &Module : nullptr;
}

void* ScriptedModules::Module() {
    ScriptedModules& modules = Instance();
    return modules.mNoModule ? nullptr : static_cast<HalLogicalDeviceList*>(&modules);
}

}  // namespace zarvo::test
