#include "host/stream/picture/FaceLayout.h"

#include <algorithm>
#include <cmath>

#include "host/stream/picture/HeadShape.h"

namespace zarvo::host {
namespace {

struct Place {
    float right, down, lift;
};

/** Where the landmarks are on a head. */
constexpr std::array<Place, FaceLayout::kLandmarks> kPlaces{{{-0.31F, -0.08F, 0},
                                                             {0.31F, -0.08F, 0},
                                                             {0, 0.24F, 0.12F},
                                                             {-0.20F, 0.55F, 0},
                                                             {0.20F, 0.55F, 0}}};

}  // namespace

Box FaceLayout::EyeBox(Landmark eye) const {
    const float half = 0.24F * headHeight;
    return {landmarks[eye].x - half, landmarks[eye].y - half, 2 * half, 2 * half};
}

Point FaceLayout::GazeEnd(Landmark eye, const Face& face) const {
    const float length = 0.6F * headHeight;
    return {landmarks[eye].x + length * std::sin(Radians(face.gazeYaw)),
            landmarks[eye].y + length * std::sin(Radians(face.gazePitch))};
}

FaceLayout LayOut(const Face& face, float pictureHeight) {
    const HeadShape head(face, pictureHeight);
    const Ellipse outline = head.Outline();
    FaceLayout layout;
    layout.centre = outline.centre;
    layout.headWidth = outline.halfWidth;
    layout.headHeight = outline.halfHeight;
    std::ranges::transform(kPlaces, layout.landmarks.begin(), [&](const Place& place) {
        return head.At(place.right, place.down, place.lift);
    });
    layout.box = {layout.centre.x - layout.headWidth, layout.centre.y - layout.headHeight,
                  2 * layout.headWidth, 2 * layout.headHeight};
    return layout;
}

}  // namespace zarvo::host
