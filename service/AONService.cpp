#include "service/AONService.h"

#include <utility>

#include "platform/Log.h"
#include "service/Operation.h"

namespace zarvo::aon {

using ndk::ScopedAStatus;

namespace {

constexpr char kNestedMessage[] = "called from inside a callback";

AONService::AONSensorInfo ToInterface(const AonSensorInfo& sensor) {
    AONService::AONSensorInfo info;
    info.sensorId = sensor.sensorId;
    info.reserved0 = sensor.reserved0;
    info.reserved1 = sensor.reserved1;
    info.supportMode = sensor.supportMode;
    for (const SizeAndSupportRates& size : sensor.sizes) {
        auto& frame = info.frameInfos.emplace_back();
        frame.frameWidth = size.width;
        frame.frameHeight = size.height;
        frame.supportRates = size.rates;
    }
    return info;
}

}  // namespace

AONService::AONService() {
    AON_LOGI(kWho, "Create AON Service");
    mRemoteCallBackManager = RemoteCallbackManager::GetSingleton();
    if (!ConnectRegistry()) return;
    mAonManager = AONManager::GetSingleton();
    if (mAonManager != nullptr) {
        mAonManagerCallback = AONManagerCallback::create(mRemoteCallBackManager);
    }
    ConnectManager();
}

AONService::AONService(std::shared_ptr<RemoteCallbackManager> registry,
                       std::shared_ptr<AONManager> manager,
                       std::shared_ptr<AONManagerCallback> translator)
    : mAonManager(std::move(manager)),
      mRemoteCallBackManager(std::move(registry)),
      mAonManagerCallback(std::move(translator)) {
    AON_LOGI(kWho, "Create AON Service");
    if (ConnectRegistry()) ConnectManager();
}

bool AONService::ConnectRegistry() {
    if (mRemoteCallBackManager == nullptr) {
        AON_LOGE(kWho, "Can not get RemoteCallBackManager");
        return false;
    }
    mRemoteCallBackManager->SetListener(this);
    return true;
}

void AONService::ConnectManager() {
    if (mAonManager == nullptr) {
        AON_LOGE(kWho, "Can not get AONManager");
        return;
    }
    mAonManager->RegisterClient(mAonManagerCallback);
}

AONService::~AONService() {
    AON_LOGI(kWho, "AON service destroy");
    if (mRemoteCallBackManager != nullptr) {
        mRemoteCallBackManager->SetListener(nullptr);
        mRemoteCallBackManager->Clear();
        mRemoteCallBackManager.reset();
    }
    if (mAonManager != nullptr) {
        mAonManager->UnregisterClient();
        mAonManager.reset();
    }
}

ScopedAStatus AONService::Refuse(int32_t code, const char* message) {
    return RefuseLoggingOtherwise(code, message, message);
}

ScopedAStatus AONService::RefuseUnlogged(int32_t code, const char* message) {
    mOperation.reason = message;
    return ScopedAStatus::fromServiceSpecificErrorWithMessage(code, message);
}

ScopedAStatus AONService::RefuseLoggingOtherwise(int32_t code, const char* message,
                                                 const char* logText) {
    AON_LOGE(kWho, "%s", logText);
    return RefuseUnlogged(code, message);
}

ScopedAStatus AONService::RefuseUnknownHandle() {
    return Refuse(kErrorGeneral, "in_clientHandle not register");
}

ScopedAStatus AONService::RefuseWithoutManager() {
    static constexpr char kMessage[] = "aon manager is null";
    AON_LOGE(kWho, "%s", kMessage);
    mOperation.reason = kMessage;
    return ScopedAStatus::fromServiceSpecificError(kErrorGeneral);
}

ScopedAStatus AONService::RefuseNested() {
    AON_LOGE(kWho, "%s", kNestedMessage);
    return ScopedAStatus::fromExceptionCodeWithMessage(EX_ILLEGAL_STATE, kNestedMessage);
}

bool AONService::IsUnknownToRegistryLocked(int64_t clientHandle) {
    return mRemoteCallBackManager != nullptr &&
           !mRemoteCallBackManager->CheckClientHandleRegistered(clientHandle);
}

ScopedAStatus AONService::getAonSensorInfoList(std::vector<AONSensorInfo>* sensors) {
    Operation operation(*this, {.what = "getAonSensorInfoList"});
    operation.SetQuery();
    if (operation.IsNested()) return RefuseNested();
    if (mAonManager == nullptr) return RefuseWithoutManager();

    std::vector<AonSensorInfo> known;
    mAonManager->GetAonSensorInfoList(known);
    sensors->clear();
    for (const AonSensorInfo& sensor : known)
        sensors->push_back(ToInterface(sensor));
    AON_LOGI(kWho, "get aon sensor list success-> size:%d", static_cast<int>(sensors->size()));
    return ScopedAStatus::ok();
}

}  // namespace zarvo::aon
