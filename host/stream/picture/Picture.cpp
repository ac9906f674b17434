#include "host/stream/picture/Picture.h"

#include <algorithm>
#include <array>
#include <span>

#include "host/stream/picture/FaceLayout.h"
#include "host/stream/picture/PersonPainter.h"
#include "host/stream/picture/Room.h"

namespace zarvo::host {
namespace {

constexpr Color kMark = Color::FromRgb(190, 255, 130);

}  // namespace

void DrawScene(const Scene& scene, Canvas& canvas) {
    DrawRoom(scene, canvas);
    std::array<const Face*, Scene::kMaxFaces> order{};
    for (size_t i = 0; i < scene.shownCount; ++i)
        order[i] = &scene.faces[i];
    const auto shown = std::span(order).first(scene.shownCount);
    // Who is nearer hides who is further.
    std::ranges::stable_sort(shown, {}, [](const Face* face) { return face->size; });
    for (const Face* face : shown)
        DrawPerson(scene, *face, canvas);
}

void DrawDetections(const Scene& scene, Canvas& canvas) {
    const auto height = static_cast<float>(canvas.Height());
    const float thickness = std::max(1.0F, height / 160);
    for (size_t i = 0; i < scene.faceCount; ++i) {
        const FaceLayout layout = LayOut(scene.faces[i], height);
        canvas.DrawFrame(layout.box, thickness, kMark);
        for (const Point& landmark : layout.landmarks)
            canvas.FillEllipse({landmark, thickness, thickness, 0}, {kMark});
        for (const auto eye : {FaceLayout::kLeftEye, FaceLayout::kRightEye})
            canvas.DrawLine(layout.landmarks[eye], layout.GazeEnd(eye, scene.faces[i]),
                            thickness / 2, {kMark});
    }
}

}  // namespace zarvo::host
