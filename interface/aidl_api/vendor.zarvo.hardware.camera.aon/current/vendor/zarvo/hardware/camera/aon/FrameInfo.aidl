package vendor.zarvo.hardware.camera.aon;
@VintfStability
parcelable FrameInfo {
  int frameWidth;
  int frameHeight;
  int[] supportRates;
}
