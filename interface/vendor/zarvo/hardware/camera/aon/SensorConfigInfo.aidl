package vendor.zarvo.hardware.camera.aon;

/** A sensor configuration that a client subscribes. */
@VintfStability
parcelable SensorConfigInfo {
    /** The sensor, by an id of AONSensorInfo. */
    int sensorId;
    /** Frame width in pixels; with the height one of the sensor's sizes. */
    int frameWidth;
    /** Frame height in pixels. */
    int frameHeight;
    /** Frames per second; one of the rates of that size. */
    int fps;
    /** Not interpreted by the service. */
    int reserved0;
    /** Not interpreted by the service. */
    int reserved1;
    /** The service types (IAONService.SERVICE_TYPE_...) to be used with this configuration. */
    int serviceType;
    /**
     * IAONService.DELIVERY_MODE_TIME_BASED, or a mode of the vision stream, in which the stream
     * may deliver fewer frames than asked. Modes of several clients that do not agree become
     * DELIVERY_MODE_TIME_BASED.
     *
     * 0, the value of a record that was not filled in, is such a mode and not the usual delivery:
     * a client that wants the rate it asks for writes DELIVERY_MODE_TIME_BASED.
     */
    int deliveryMode;
}
