package vendor.zarvo.hardware.camera.aon;

/**
 * The value of a result. The order of the alternatives is their number on the wire: it never
 * changes, and none is ever added, because an older reader cannot pass over one it does not know.
 */
@VintfStability
union AONResultValue {
    /** Not in use; what a value holds that was never set. */
    byte byteValue;
    /** Images and face descriptors. */
    byte[] byteArray;
    /** Counts, sizes and ids. */
    int intValue;
    /** Not in use. */
    int[] intArray;
    /** Not in use. */
    String stringValue;
    /** The rotation of the scene. */
    float floatValue;
    /** Fusion items, face angle and gaze. */
    float[] floatArray;
    /** Not in use. */
    double doubleValue;
    /** Not in use. */
    double[] doubleArray;
    /** Not in use. */
    boolean boolValue;
}
