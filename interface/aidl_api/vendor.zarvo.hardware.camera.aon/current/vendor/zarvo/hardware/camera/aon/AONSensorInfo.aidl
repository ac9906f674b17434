package vendor.zarvo.hardware.camera.aon;
@VintfStability
parcelable AONSensorInfo {
  int sensorId;
  int reserved0;
  int reserved1;
  int supportMode;
  List<vendor.zarvo.hardware.camera.aon.FrameInfo> frameInfos;
}
