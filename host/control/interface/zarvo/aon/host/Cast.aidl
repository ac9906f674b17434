package zarvo.aon.host;

/** Who is in front of the simulated sensor. */
@Backing(type="int")
enum Cast {
    /** People come and go. */
    STORY = 0,
    NOBODY = 1,
    ONE = 2,
    TWO = 3,
}
