package vendor.zarvo.hardware.camera.aon;
@VintfStability
parcelable AONCallBackInfo {
  int serviceType;
  List<vendor.zarvo.hardware.camera.aon.AONResult> results;
}
