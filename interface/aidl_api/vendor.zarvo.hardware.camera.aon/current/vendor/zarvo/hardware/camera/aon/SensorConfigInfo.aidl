package vendor.zarvo.hardware.camera.aon;
@VintfStability
parcelable SensorConfigInfo {
  int sensorId;
  int frameWidth;
  int frameHeight;
  int fps;
  int reserved0;
  int reserved1;
  int serviceType;
  int deliveryMode;
}
