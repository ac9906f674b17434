package vendor.zarvo.hardware.camera.aon;

import vendor.zarvo.hardware.camera.aon.FrameInfo;

/** One sensor that can run the always-on stream. */
@VintfStability
parcelable AONSensorInfo {
    /** The sensor's id, as SensorConfigInfo.sensorId wants it. */
    int sensorId;
    /** Not interpreted by the service; 0. */
    int reserved0;
    /** Not interpreted by the service; a word of the sensor's last capability record. */
    int reserved1;
    /**
     * The service types (bits) that the sensor supports. Always 63 in this version, whatever the
     * sensor is: IAONService.SERVICE_TYPE_... and two bits without a name.
     */
    int supportMode;
    /** The frame sizes and their rates, in the sensor's order. */
    List<FrameInfo> frameInfos;
}
