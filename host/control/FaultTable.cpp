#include "host/control/FaultTable.h"

#include "host/binder/BinderFaults.h"
#include "host/cutils/PropertyStore.h"
#include "host/stream/CameraDevices.h"
#include "host/stream/SimulatorControl.h"

namespace zarvo::host {

std::span<const NamedFault> AllFaults() {
    auto& stream = SimulatorControl::Instance().callFaults;
    auto& cameras = CameraDevices::Instance();
    auto& binder = BinderFaults::Instance();
    static const NamedFault kFaults[] = {
            {"stream.start", &stream.start},
            {"stream.stop", &stream.stop},
            {"stream.notifyCameraStatus", &stream.notifyCameraStatus},
            {"stream.getSensorMode", &stream.getSensorMode},
            {"camera.factory", &cameras.factoryFault},
            {"camera.module", &cameras.moduleFault},
            {"binder.transact", &binder.transact},
            {"binder.ping", &binder.ping},
            {"binder.linkToDeath", &binder.linkToDeath},
            {"binder.unlinkToDeath", &binder.unlinkToDeath},
            {"property.set", &PropertyStore::Instance().setFault},
    };
    return kFaults;
}

FaultPoint* FindFault(std::string_view name) {
    for (const NamedFault& fault : AllFaults())
        if (fault.name == name) return fault.point;
    return nullptr;
}

}  // namespace zarvo::host
