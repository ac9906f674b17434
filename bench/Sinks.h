#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <benchmark/benchmark.h>

#include "events/AONManagerCallback.h"

namespace zarvo::bench {

/** Takes finished records and does nothing. */
class NoSink : public aon::IOutEventCallback {
  public:
    using AONCallBackInfo = aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
    using AONSensorStateInfo = aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;

    void OnAONEvent(AONCallBackInfo& info) override {
        benchmark::DoNotOptimize(info.results.data());
        benchmark::ClobberMemory();
    }
    void OnAONSensorEvent(AONSensorStateInfo& /*info*/) override {}
};

/** A translator into a sink that does nothing: the conversion alone. */
inline std::shared_ptr<aon::AONManagerCallback> NewConversion() {
    return aon::AONManagerCallback::create(std::make_shared<NoSink>());
}

/** Gives what the event becomes to `use`. */
inline void Convert(aov_event& event,
                    const std::function<void(NoSink::AONCallBackInfo& info)>& use) {
    class Sink : public NoSink {
      public:
        explicit Sink(std::function<void(AONCallBackInfo& info)> taken) : mUse(std::move(taken)) {}
        void OnAONEvent(AONCallBackInfo& info) override { mUse(info); }

      private:
        const std::function<void(AONCallBackInfo& info)> mUse;
    };
    aon::AONManagerCallback::create(std::make_shared<Sink>(use))->onCallback(&event);
}

}  // namespace zarvo::bench
