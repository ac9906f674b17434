package zarvo.aon.host;

/** A camera device, and the sensors that it takes while it is open. */
parcelable CameraDevice {
    int instanceId;
    int[] sensorIds;
    boolean isOpen;
}
