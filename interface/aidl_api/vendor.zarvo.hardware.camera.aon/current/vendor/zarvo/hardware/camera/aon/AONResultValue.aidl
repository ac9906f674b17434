package vendor.zarvo.hardware.camera.aon;
@VintfStability
union AONResultValue {
  byte byteValue;
  byte[] byteArray;
  int intValue;
  int[] intArray;
  String stringValue;
  float floatValue;
  float[] floatArray;
  double doubleValue;
  double[] doubleArray;
  boolean boolValue;
}
