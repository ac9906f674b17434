package vendor.zarvo.hardware.camera.aon;
@VintfStability
parcelable AONResult {
  int key;
  vendor.zarvo.hardware.camera.aon.AONResultValue value;
  const int RESULT_KEY_FRAME_ID = 0;
  const int RESULT_KEY_FRAME_WIDTH = 1;
  const int RESULT_KEY_FRAME_HEIGHT = 2;
  const int RESULT_KEY_FUSION_ROTATE_ANGLE = 100;
  const int RESULT_KEY_FUSION_COUNT = 101;
  const int RESULT_KEY_FUSION_ITEM_LENGTH = 102;
  const int RESULT_KEY_FUSION_DATA = 103;
  const int RESULT_KEY_FACE_ANGLE = 200;
  const int RESULT_KEY_GAZE = 300;
  const int RESULT_KEY_FACE_FEATURE = 400;
  const int RESULT_KEY_IMAGE_WIDTH = 700;
  const int RESULT_KEY_IMAGE_HEIGHT = 701;
  const int RESULT_KEY_IMAGE_STRIDE = 702;
  const int RESULT_KEY_IMAGE_DATA = 703;
}
