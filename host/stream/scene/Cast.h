#pragma once

namespace zarvo::host {

/** Who is in front of the simulated sensor. */
enum class Cast {
    /** People come and go: mostly one, now and then two, now and then nobody. */
    kStory,
    /** Nobody, ever. */
    kNobody,
    /** One person in the middle, who stays. */
    kOne,
    /** Two persons beside each other, who stay. */
    kTwo,
};

}  // namespace zarvo::host
