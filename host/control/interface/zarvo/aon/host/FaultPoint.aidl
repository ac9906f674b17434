package zarvo.aon.host;

/** A place where failures can be ordered. */
parcelable FaultPoint {
    String name;
    /** How often the place was reached. */
    long calls;
}
