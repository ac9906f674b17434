package vendor.zarvo.hardware.camera.aon;

/** A change of a sensor's state. */
@VintfStability
parcelable AONSensorStateInfo {
    /**
     * The service has stopped the always-on stream on the sensor, or a camera device that used the
     * sensor has closed. Both look the same. It is no promise: another camera device may still use
     * the sensor, and a start is refused then; and a stream that would not stop may go on
     * delivering events.
     */
    const int SENSOR_STATE_IDLE = 0;
    /** The always-on stream runs on the sensor. */
    const int SENSOR_STATE_STARTED = 1;
    /** A camera device uses the sensor. A stream that ran on it has been stopped. */
    const int SENSOR_STATE_BUSY = 2;

    /** The sensor, by an id of AONSensorInfo, or of a sensor that only the camera uses. */
    int sensorId;
    /** One of SENSOR_STATE_... */
    int state;
}
