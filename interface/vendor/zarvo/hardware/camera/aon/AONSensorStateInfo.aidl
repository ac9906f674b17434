package vendor.zarvo.hardware.camera.aon;

/** A change of a sensor's state. */
@VintfStability
parcelable AONSensorStateInfo {
    /**
     * Nothing of the always-on stream runs on the sensor: it was stopped, or the camera device
     * that used it has closed. Both look the same.
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
