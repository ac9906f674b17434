#pragma once

#include <memory>

#include "callbacks/IOutEventCallback.h"
#include "manager/IAONManagerCallback.h"

namespace zarvo::aon {

/**
 * Translates what the stream manager reports into the records that clients receive.
 *
 * Made by the service, shared with the stream manager. Holds no state but its receiver, takes no
 * locks, and works on any number of threads at once: each call builds its own record and hands it
 * on before it returns.
 */
class AONManagerCallback : public IAONManagerCallback,
                           public std::enable_shared_from_this<AONManagerCallback> {
  public:
    /** Makes a translator that delivers to `callback`; an empty one drops everything. */
    static std::shared_ptr<AONManagerCallback> create(
            const std::shared_ptr<IOutEventCallback>& callback);

    explicit AONManagerCallback(const std::shared_ptr<IOutEventCallback>& callback);

    /** Decodes one event and delivers it; a null event is ignored. */
    void onCallback(aov_event* event) override;
    void OnServiceStart(int sensorId) override;
    void OnServiceStop(int sensorId) override;
    void OnSensorIdle(int sensorId) override;
    void OnSensorBusy(int sensorId) override;

  private:
    void ReportState(int sensorId, int state);

    const std::shared_ptr<IOutEventCallback> mCallback;
};

}  // namespace zarvo::aon
