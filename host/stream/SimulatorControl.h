#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/common/FaultPoint.h"
#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::host {

/** A sensor that the simulated stream offers. */
struct SensorDescription {
    int id = 0;
    /** Mode bits that getSensorMode() gives. */
    int mode = 0;
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
    std::optional<uint32_t> outputSize;
    std::optional<uint32_t> fusionCount;
    /** Of both image blocks' headers. */
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
 * the stream's callbacks and without any lock that a callback takes.
 */
class SimulatorControl {
  public:
    static SimulatorControl& Instance();

    /** Which calls are refused, by number. */
    struct CallFaults {
        FaultPoint start, stop, notifyCameraStatus, getSensorMode;
    };
    CallFaults callFaults;

    /** Lets createInstance() give null, if it was not called before. */
    virtual void SetNoStream(bool none) = 0;
    /** Replaces the sensors; none is possible. A running stream goes on. */
    virtual void SetSensors(std::vector<SensorDescription> sensors) = 0;
    /** Begins another scene: the next start delivers it from frame 0. */
    virtual void SetSeed(uint64_t seed) = 0;
    /** Lets streams that start from now on deliver frames by command, not by the clock. */
    virtual void SetManualDelivery(bool manual) = 0;
    /** Applies to every record delivered from now on. */
    virtual void SetRecordFaults(const RecordFaults& faults) = 0;

    /** Manual delivery: one more frame from the stream's thread, without waiting for it; false
     * when no such stream runs. */
    virtual bool RequestFrame() = 0;
    /** The same, and waits until the callback returned; false also when the stream was stopped
     * before the callback began. */
    virtual bool DeliverOne() = 0;

    /**
     * A camera device opens or closes. Returns at once; a thread of the stream's own, which
     * delivers no events, tells the callback, one notice after another. The callback is that of
     * the latest start, as long as anyone holds it, whether or not the stream runs. Without one,
     * nobody is told; a new callback hears at its first start which devices are open.
     */
    virtual void OpenCamera(int instanceId) = 0;
    virtual void CloseCamera(int instanceId) = 0;
    /** Waits until the callback returned from every notice so far. */
    virtual void WaitForCameraNotices() = 0;

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
