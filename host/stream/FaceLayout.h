#pragma once

#include <array>

#include "host/stream/Scene.h"

namespace zarvo::host {

/** A rectangle in pixels. */
struct Box {
    float left = 0, top = 0, width = 0, height = 0;
};

/** Where the parts of one face lie in a picture, in pixels. */
struct FaceLayout {
    /** In the order that detectors name them; left and right are the picture's. */
    enum Landmark { kLeftEye, kRightEye, kNose, kLeftMouth, kRightMouth, kLandmarks };

    Point centre;
    /** Half axes of the head. */
    float headWidth = 0, headHeight = 0;
    /** Half width of an eye. */
    float eyeWidth = 0;
    std::array<Point, kLandmarks> landmarks;
    Box box;
    /** The pixels around one eye, both eyes' being squares of the same size. */
    Box EyeBox(Landmark eye) const;
};

/** A point of the head's surface as the turned head shows it: `right` and `down` from the middle
 * of the face, in half heads, before the turning. */
Point OnFace(const Face& face, float right, float down, float pictureHeight);

/** The layout of a face in a picture of the given height in pixels. A pure function. */
FaceLayout LayOut(const Face& face, float pictureHeight);

}  // namespace zarvo::host
