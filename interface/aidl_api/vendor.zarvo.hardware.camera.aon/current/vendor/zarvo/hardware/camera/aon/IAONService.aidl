package vendor.zarvo.hardware.camera.aon;
@VintfStability
interface IAONService {
  long registerClient(in vendor.zarvo.hardware.camera.aon.IAONServiceCallBack callback, int serviceType);
  List<vendor.zarvo.hardware.camera.aon.AONSensorInfo> getAonSensorInfoList();
  void subscribeSensor(in long clientHandle, in vendor.zarvo.hardware.camera.aon.SensorConfigInfo config);
  void startService(in long clientHandle, int serviceType);
  void stopService(in long clientHandle, int serviceType);
  void unsubscribeSensor(in long clientHandle);
  void unregisterClient(in long clientHandle);
  const int SERVICE_TYPE_FUSION = 1;
  const int SERVICE_TYPE_FACE_ANGLE = 2;
  const int SERVICE_TYPE_GAZE = 4;
  const int SERVICE_TYPE_FACE_FEATURE = 8;
  const int DELIVERY_MODE_TIME_BASED = 1;
}
