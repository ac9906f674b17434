package vendor.zarvo.hardware.camera.aon;

/** One frame size of a sensor. */
@VintfStability
parcelable FrameInfo {
    /** Frame width in pixels. */
    int frameWidth;
    /** Frame height in pixels. */
    int frameHeight;
    /** The rates at this size, in frames per second, in the sensor's order. */
    int[] supportRates;
}
