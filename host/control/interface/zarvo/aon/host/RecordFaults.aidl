package zarvo.aon.host;

/** Lies that delivered records tell; a negative number tells none. */
parcelable RecordFaults {
    /** Bytes of the result region. */
    long outputSize = -1;
    /** Faces announced. */
    long fusionCount = -1;
    /** Pixels, and bytes per row, of both images. */
    long imageHeight = -1;
    long imageStride = -1;
    /** Null is delivered in place of a record. */
    boolean nullEvent;
}
