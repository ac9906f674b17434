package vendor.zarvo.hardware.camera.aon;

import vendor.zarvo.hardware.camera.aon.AONResult;

/** The results of one frame. */
@VintfStability
parcelable AONCallBackInfo {
    /**
     * The service types (bits) that produced results for this frame, as the stream gave them:
     * all that run, of whichever client. May be 0.
     */
    int serviceType;
    /**
     * The results: those of fusion, face angle, gaze and face feature, each if its bit is set
     * and the stream delivered enough data, then the image if there is one, and at the end the
     * frame's id, width and height. Look results up by key, and pass over keys that are unknown.
     */
    List<AONResult> results;
}
