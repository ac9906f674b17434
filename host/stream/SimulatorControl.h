#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "host/common/FaultPoint.h"
#include "host/stream/RecordSource.h"
#include "host/stream/scene/Cast.h"
#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::host {

/** A sensor that the simulated stream offers. */
struct SensorDescription {
    int id = 0;
    /** Mode bits that getSensorMode() gives. */
    int mode = 0;
    /** None is possible: a sensor without capability records. */
    std::vector<aov_sensor_info> sizes;
};

/** What notifyCameraStatus() was told. */
struct CameraStatus {
    std::vector<int> sensorIds;
    bool opened = false;

    bool operator==(const CameraStatus&) const = default;
};

/** Lies that delivered records tell, in place of what was rendered. */
struct RecordFaults {
    /** Bytes; below 227969 some result block does not fit. */
    std::optional<uint32_t> outputSize;
    /** A block has room for 30. */
    std::optional<uint32_t> fusionCount;
    /** Pixels and bytes per row, of both image blocks' headers. */
    std::optional<uint32_t> imageHeight;
    std::optional<uint32_t> imageStride;
    /** Deliver null in place of a record. */
    bool nullEvent = false;
};

/**
 * The knobs of the simulated stream of this process, for tests and programs. The stream itself
 * is what IAOVStream::createInstance() gives.
 *
 * Every knob may be turned from any thread at any time, also inside a callback, but for the three
 * operations that wait: DeliverOne(), WaitForCameraNotices() and Shutdown() are called outside of
 * the stream's callbacks and without any lock that a callback takes. What a knob was set to stays
 * until it is set again; without more said, it holds from the next frame or call on.
 */
class SimulatorControl {
  public:
    static constexpr uint64_t kAll = UINT64_MAX;

    static SimulatorControl& Instance();

    // The scene. The same cast, seed, frame size, rate and frame number give the same bytes.

    /** Begins another scene, from frame 0; 1 by default. */
    virtual void SetSeed(uint64_t seed) = 0;
    /** Who is there; the story by default. The frames count on. */
    virtual void SetCast(Cast cast) = 0;
    /** Replaces the sensors; by default ids 0 to 3, see SensorTable.cpp. None is possible. A
     * running stream goes on. */
    virtual void SetSensors(std::vector<SensorDescription> sensors) = 0;

    // Delivery: by the clock, at the rate that start() was given, or by command.

    /** Makes each frame late by a share of its own of `fraction` periods, 0 to 1 (0 by default;
     * cut to that): seed and frame number decide it, the pace stays, and no frame comes less than
     * a quarter of a period after the one before. */
    virtual void SetJitter(float fraction) = 0;
    /** Lets streams that start from now on deliver frames by command, not by the clock. */
    virtual void SetManualDelivery(bool manual) = 0;
    /** Lets streams that start from now on deliver these records, by the clock at their own
     * intervals, whatever was started; null for the scene again. Jitter and rate do not matter to
     * them, faults do; a stop pauses them. */
    virtual void SetReplay(std::shared_ptr<RecordSource> records) = 0;
    /** Manual delivery: one more frame from the stream's thread, without waiting for it; false
     * when no such stream runs, or when it has no more. */
    virtual bool RequestFrame() = 0;
    /** The same, and waits until the callback returned; false also when the stream was stopped
     * before the callback began. */
    virtual bool DeliverOne() = 0;

    // Faults.

    /** Which calls are refused, by number. */
    struct CallFaults {
        FaultPoint start, stop, notifyCameraStatus, getSensorMode;
    };
    CallFaults callFaults;

    /** Lets createInstance() give null, if it was not called before. */
    virtual void SetNoStream(bool none) = 0;
    /** Lets `count` records lie, beginning with the `first` one from now on (1 is the next).
     * Takes the place of what was ordered before. */
    virtual void SetRecordFaults(const RecordFaults& faults, uint64_t first = 1,
                                 uint64_t count = kAll) = 0;
    /** Lets so many more events of a stream (0 by default) begin after its stop(): by the clock
     * as if it ran on, also beside a stream that was started since; or by command, until another
     * stream starts. Shutdown() ends them. */
    virtual void SetEventsAfterStop(uint32_t count) = 0;
    /** Lets every stop() take so long (0 by default) before it does anything, refused ones too.
     * Meanwhile events and all other calls go on. */
    virtual void SetStopDelay(std::chrono::milliseconds delay) = 0;

    // Camera devices, by their instance ids.

    /**
     * A camera device opens or closes. Returns at once; a thread of the stream's own, which
     * delivers no events, tells the callback, one notice after another. The callback is that of
     * the latest start, as long as anyone holds it, whether or not the stream runs. Without one,
     * nobody is told; a new callback hears at its first start which devices are open.
     */
    virtual void OpenCamera(int instanceId) = 0;
    virtual void CloseCamera(int instanceId) = 0;
    /** The same for a device that opens and closes `cycles` times in a row, as fast as the
     * callback takes it, and ends closed. Later notices wait for it, Shutdown() cuts it short. */
    virtual void StormCamera(int instanceId, uint32_t cycles) = 0;
    /** Which devices are open, as ordered; the callback may not have heard of it yet. */
    virtual std::vector<int> OpenCameras() const = 0;
    /** Waits until the callback returned from every notice so far. */
    virtual void WaitForCameraNotices() = 0;

    // Observation.

    /** What notifyCameraStatus() was told, refused calls too; the latest 256. */
    virtual std::vector<CameraStatus> CameraStatusCalls() const = 0;
    /** Whether the stream is started. */
    virtual bool Running() const = 0;

    /** Delivers the notices so far, stops the stream and waits until no callback is in flight.
     * The stream can be started again. Also happens when the process ends, then for good. */
    virtual void Shutdown() = 0;

  protected:
    ~SimulatorControl() = default;
};

}  // namespace zarvo::host
