#include <memory>
#include <utility>

#include "host/stream/Lateness.h"
#include "host/stream/Pace.h"
#include "host/stream/SimulatedSensor.h"

namespace zarvo::host {

DeliveryRun::Source SimulatedSensor::FramesLocked(const user_param& param) {
    DeliveryRun::Source source = mReplay != nullptr ? ReplayFrames(mReplay) : SceneFrames(param);
    if (mManualDelivery) source.nextDue = nullptr;
    return source;
}

DeliveryRun::Source SimulatedSensor::SceneFrames(const user_param& param) {
    const RenderConfig config{.width = param.frameWidth,
                              .height = param.frameHeight,
                              .frameRate = param.frameRate,
                              .serviceTypes = param.serviceType};
    const auto period = Pace::Period(std::chrono::seconds(1)) / param.frameRate;
    return {.nextDue =
                    [this, period, pace = Pace(Pace::Clock::now())]() mutable {
                        return pace.NextBeat(period, LatenessOfNext(period));
                    },
            .render = [this, config](aov_event& record) { return RenderNext(config, record); },
            .claim = nullptr};
}

DeliveryRun::Source SimulatedSensor::ReplayFrames(const std::shared_ptr<RecordSource>& replay) {
    const auto number = std::make_shared<uint64_t>(0);
    return {.nextDue = [replay, pace = Pace(Pace::Clock::now())]() mutable
            -> std::optional<DeliveryRun::Time> {
                const auto delay = replay->NextDelay();
                if (!delay) return std::nullopt;
                return pace.After(*delay);
            },
            .render = [this, replay, number](aov_event& record) -> std::optional<aov_event*> {
                const auto written = replay->Write(record);
                if (!written) return std::nullopt;
                *number = *written;
                return WithFaults(record);
            },
            .claim = [replay, number] { return replay->Claim(*number); }};
}

Pace::Period SimulatedSensor::LatenessOfNext(Pace::Period period) const {
    const std::lock_guard lock(mMutex);
    return LatenessOf({mSeed, mJitter}, mNextFrame, period);
}

aov_event* SimulatedSensor::RenderNext(RenderConfig config, aov_event& record) {
    std::unique_lock lock(mMutex);
    config.seed = mSeed;
    config.cast = mCast;
    const uint32_t frame = mNextFrame++;
    lock.unlock();
    RenderScene(config, frame, record);
    return WithFaults(record);
}

aov_event* SimulatedSensor::WithFaults(aov_event& record) {
    std::unique_lock lock(mMutex);
    const RecordFaults faults = mRecordFaultPoint.ShouldFail() ? mRecordFaults : RecordFaults{};
    lock.unlock();
    ApplyFaults(faults, record);
    return faults.nullEvent ? nullptr : &record;
}

}  // namespace zarvo::host
