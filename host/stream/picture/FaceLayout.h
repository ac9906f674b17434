#pragma once

#include <array>

#include "host/stream/picture/Shapes.h"
#include "host/stream/scene/Scene.h"

namespace zarvo::host {

/** Where the parts of one face lie in a picture, in pixels. */
struct FaceLayout {
    /** In the order that detectors name them; left and right are the picture's. */
    enum Landmark { kLeftEye, kRightEye, kNose, kLeftMouth, kRightMouth, kLandmarks };

    Point centre;
    /** Half axes of the head. */
    float headWidth = 0, headHeight = 0;
    std::array<Point, kLandmarks> landmarks;
    Box box;
    /** The pixels around one eye, both eyes' being squares of the same size. */
    Box EyeBox(Landmark eye) const;
    /** Where an arrow ends that leaves the eye where it looks. */
    Point GazeEnd(Landmark eye, const Face& face) const;
};

/** The layout of a face in a picture of the given height in pixels. A pure function. */
FaceLayout LayOut(const Face& face, float pictureHeight);

}  // namespace zarvo::host
