package zarvo.aon.host;

import zarvo.aon.host.CameraDevice;
import zarvo.aon.host.Cast;
import zarvo.aon.host.FaultPoint;
import zarvo.aon.host.RecordFaults;

/**
 * What can be turned and looked at in a service's process on a Linux machine, which a phone has
 * no need of: the simulated sensor, the camera devices, faults, properties. The instance is
 * "zarvo.aon.host.IHostControl/default".
 *
 * Everything holds from the next frame or call on, until it is set again. What cannot be is
 * refused with EX_ILLEGAL_ARGUMENT and a message that says why.
 */
interface IHostControl {
    const String INSTANCE = "zarvo.aon.host.IHostControl/default";

    // The scene, and when it is delivered.

    /** Begins another scene, from frame 0. */
    void setSeed(long seed);
    void setCast(Cast cast);
    /** Makes frames late by up to so many periods, 0 to 1. */
    void setJitter(float fraction);
    /** Whether the always-on stream is started. */
    boolean isStreaming();

    // Camera devices.

    CameraDevice[] listCameras();
    /** Returns before the service has been told. */
    void openCamera(int instanceId);
    void closeCamera(int instanceId);
    /** Opens and closes it that often, as fast as the service takes it. */
    void stormCamera(int instanceId, int cycles);

    // Faults.

    FaultPoint[] listFaults();
    /** Lets `count` calls of that place fail, beginning with the `first` one from now on (1 is the
     * next). A negative count is all. */
    void failCalls(String name, long first, long count);
    /** The same for records that lie. */
    void setRecordFaults(in RecordFaults faults, long first, long count);
    /** Lets so many events begin after the stream was stopped. */
    void setEventsAfterStop(int count);
    /** Lets every stop of the stream take so long. */
    void setStopDelay(int milliseconds);
    /** Takes all ordered faults back. */
    void clearFaults();

    // Properties of the service's process.

    /** Empty if it is not set. */
    String getProperty(String name);
    void setProperty(String name, String value);

    /** What the service's dump says to these arguments. */
    String dumpService(in String[] arguments);
}
