package vendor.zarvo.hardware.camera.aon;

import vendor.zarvo.hardware.camera.aon.AONResultValue;

/** One result of a frame: a key and its value. */
@VintfStability
parcelable AONResult {
    /** Frame number (int). Frames may be missing. */
    const int RESULT_KEY_FRAME_ID = 0;
    /** Width of the sensor's frame in pixels (int). */
    const int RESULT_KEY_FRAME_WIDTH = 1;
    /** Height of the sensor's frame in pixels (int). */
    const int RESULT_KEY_FRAME_HEIGHT = 2;

    /** Rotation of the scene (float); its unit is the detector's. */
    const int RESULT_KEY_FUSION_ROTATE_ANGLE = 100;
    /**
     * Number of fusion items that the stream reported (int). It is the stream's own number:
     * look at the length of RESULT_KEY_FUSION_DATA for what is there.
     */
    const int RESULT_KEY_FUSION_COUNT = 101;
    /** Floats per fusion item (int): 20. */
    const int RESULT_KEY_FUSION_ITEM_LENGTH = 102;
    /**
     * The fusion items one after the other (float array), RESULT_KEY_FUSION_ITEM_LENGTH each.
     * At most 30 items hold data; items beyond them are zero or missing.
     */
    const int RESULT_KEY_FUSION_DATA = 103;

    /** The face-angle result (float array): 14 numbers of the detector. */
    const int RESULT_KEY_FACE_ANGLE = 200;

    /** The gaze result (float array): 6 numbers of the detector. */
    const int RESULT_KEY_GAZE = 300;

    /** The face descriptor (byte array): 128 bytes of the detector. */
    const int RESULT_KEY_FACE_FEATURE = 400;

    /** Width of the image (int): the same number as the stride. */
    const int RESULT_KEY_IMAGE_WIDTH = 700;
    /** Rows of the image (int). */
    const int RESULT_KEY_IMAGE_HEIGHT = 701;
    /** Bytes per row of the luma plane (int). */
    const int RESULT_KEY_IMAGE_STRIDE = 702;
    /**
     * The picture (byte array): 8-bit 4:2:0, the luma plane followed by the chroma plane,
     * stride * height * 3 / 2 bytes. Shorter if the picture does not fit the stream's record.
     */
    const int RESULT_KEY_IMAGE_DATA = 703;

    /** One of RESULT_KEY_... */
    int key;
    /** The value; the key says which alternative it holds. */
    AONResultValue value;
}
