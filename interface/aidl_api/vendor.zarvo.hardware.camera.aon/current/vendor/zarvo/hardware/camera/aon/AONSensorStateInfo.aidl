package vendor.zarvo.hardware.camera.aon;
@VintfStability
parcelable AONSensorStateInfo {
  int sensorId;
  int state;
  const int SENSOR_STATE_IDLE = 0;
  const int SENSOR_STATE_STARTED = 1;
  const int SENSOR_STATE_BUSY = 2;
}
