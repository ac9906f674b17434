#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::bench {

/**
 * The platform's stream as the benchmark plays it, in place of the simulated one: it starts and
 * stops at once, and delivers the caller's records on the caller's thread, so that what is measured
 * is the service's own. One per process; any thread.
 */
class QuietStream : public IAOVStream {
  public:
    static constexpr int kSensorId = 0;
    static constexpr int kRate = 30;

    static QuietStream& Instance();

    /** What the stream calls as long as it runs, else null. */
    std::shared_ptr<IAovStreamCallback> Callback() const;

    std::vector<int> getSensorIdList() override { return {kSensorId}; }
    std::vector<aov_sensor_info> getSensorInfo(int sensorId) override;
    int getSensorMode(int sensorId, int* mode) override;
    bool start(user_param* param) override;
    bool notifyCameraStatus(const std::vector<int>& /*sensorIds*/, bool /*opened*/) override {
        return true;
    }
    bool stop() override;

  private:
    mutable std::mutex mMutex;
    std::shared_ptr<IAovStreamCallback> mCallback;  // mMutex
};

}  // namespace zarvo::bench
