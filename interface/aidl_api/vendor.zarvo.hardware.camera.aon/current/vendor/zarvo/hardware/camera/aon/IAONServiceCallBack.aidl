package vendor.zarvo.hardware.camera.aon;
@VintfStability
interface IAONServiceCallBack {
  void onAONEvent(in long clientHandle, in vendor.zarvo.hardware.camera.aon.AONCallBackInfo info);
  void onSensorStateChanged(in long clientHandle, in vendor.zarvo.hardware.camera.aon.AONSensorStateInfo info);
}
