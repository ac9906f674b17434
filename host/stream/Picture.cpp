#include "host/stream/Picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace zarvo::host {
namespace {

constexpr float kDegree = std::numbers::pi_v<float> / 180;

constexpr Color kWall{120, 132, 124};
constexpr Color kShirt{70, 150, 112};
constexpr Color kHair{40, 122, 136};
constexpr Color kSkin{165, 112, 150};
constexpr Color kEyeWhite{225, 128, 128};
constexpr Color kIris{75, 136, 118};
constexpr Color kPupil{20, 128, 128};
constexpr Color kLips{105, 118, 164};
constexpr Color kMark{235, 64, 96};

/** Draws one face in one light. */
class FacePainter {
  public:
    FacePainter(const Face& face, float light, Canvas& canvas)
        : mFace(face),
          mLight(light),
          mCanvas(canvas),
          mPictureHeight(static_cast<float>(canvas.Height())),
          mLayout(LayOut(face, mPictureHeight)) {}

    void Draw() {
        DrawShoulders();
        DrawHead();
        DrawEye(FaceLayout::kLeftEye);
        DrawEye(FaceLayout::kRightEye);
        DrawBrows();
        DrawNose();
        DrawMouth();
    }

  private:
    void Blob(Point centre, float halfWidth, float halfHeight, Color color) {
        mCanvas.FillEllipse({centre, halfWidth, halfHeight, mFace.roll}, color.Lit(mLight));
    }
    Point At(float right, float down) const { return OnFace(mFace, right, down, mPictureHeight); }
    /** A point seen from `origin`, both axes turned with the head. */
    Point Beside(Point origin, float right, float down) const {
        const float c = std::cos(mFace.roll * kDegree);
        const float s = std::sin(mFace.roll * kDegree);
        return {origin.x + right * c - down * s, origin.y + right * s + down * c};
    }

    void DrawShoulders() {
        const float h = mLayout.headHeight;
        const Point below{mLayout.centre.x, mLayout.centre.y + 2.05F * h};
        mCanvas.FillEllipse({below, 1.55F * h, 0.95F * h, 0}, kShirt.Lit(mLight));
        const Point neck{mLayout.centre.x, mLayout.centre.y + 1.0F * h};
        mCanvas.FillEllipse({neck, 0.32F * h, 0.45F * h, 0}, kSkin.Lit(0.78F * mLight));
    }

    void DrawHead() {
        const float w = mLayout.headWidth;
        const float h = mLayout.headHeight;
        Blob(Beside(mLayout.centre, 0, -0.12F * h), 1.08F * w, 1.02F * h, kHair);
        Blob(mLayout.centre, w, h, kSkin.Lit(0.84F));
        // Rounder the further in: each layer lighter, and nearer to the light at the upper left.
        for (const float inner : {0.94F, 0.86F, 0.74F})
            Blob(Beside(mLayout.centre, -0.10F * (1 - inner) * w, -0.10F * (1 - inner) * h),
                 inner * w, inner * h, kSkin.Lit(1.38F - 0.5F * inner));
        Blob(At(0, -0.86F), 0.74F * w, 0.30F * h, kHair);
    }

    void DrawEye(FaceLayout::Landmark eye) {
        const Point centre = mLayout.landmarks[eye];
        const float w = mLayout.eyeWidth;
        const float open = 0.55F * w * mFace.eyeOpenness;
        Blob(centre, 1.2F * w, 0.12F * w + 1.15F * open, kSkin.Lit(0.62F));
        Blob(centre, w, open, kEyeWhite);
        const float right = 0.9F * w * std::sin(mFace.gazeYaw * kDegree);
        const float down = 0.7F * w * std::sin(mFace.gazePitch * kDegree);
        const Point iris = Beside(centre, right, down * mFace.eyeOpenness);
        Blob(iris, 0.42F * w, std::min(0.42F * w, open), kIris);
        Blob(iris, 0.20F * w, std::min(0.20F * w, open), kPupil);
    }

    void DrawBrows() {
        const float w = mLayout.eyeWidth;
        Blob(At(-0.31F, -0.33F), 1.2F * w, 0.22F * w, kHair);
        Blob(At(0.31F, -0.33F), 1.2F * w, 0.22F * w, kHair);
    }

    void DrawNose() {
        const float w = mLayout.eyeWidth;
        Blob(At(0.03F, 0.06F), 0.32F * w, 1.0F * w, kSkin.Lit(0.90F));
        Blob(mLayout.landmarks[FaceLayout::kNose], 0.62F * w, 0.34F * w, kSkin.Lit(0.80F));
    }

    void DrawMouth() {
        const float w = mLayout.eyeWidth;
        Blob(At(0, 0.48F), 1.45F * w, 0.40F * w, kLips);
        Blob(At(0, 0.48F), 1.30F * w, 0.07F * w, kLips.Lit(0.5F));
    }

    const Face& mFace;
    const float mLight;
    Canvas& mCanvas;
    const float mPictureHeight;
    const FaceLayout mLayout;
};

/** A wall, lighter towards the window on its left and darker towards the floor. */
void DrawRoom(const Scene& scene, Canvas& canvas) {
    const auto width = static_cast<float>(canvas.Width());
    const auto height = static_cast<float>(canvas.Height());
    std::vector<float> rows(canvas.Height());
    std::vector<float> columns(canvas.Width());
    for (size_t y = 0; y < rows.size(); ++y)
        rows[y] = 25 - 55 * static_cast<float>(y) / height;
    for (size_t x = 0; x < columns.size(); ++x) {
        const float fromWindow = static_cast<float>(x) / width - 0.12F;
        columns[x] = 45 * std::exp(-30 * fromWindow * fromWindow);
    }
    canvas.FillShaded(kWall.Lit(scene.light), rows, columns);
}

}  // namespace

void DrawScene(const Scene& scene, Canvas& canvas) {
    DrawRoom(scene, canvas);
    for (size_t i = 0; i < scene.faceCount; ++i)
        FacePainter(scene.faces[i], scene.light, canvas).Draw();
}

void DrawDetections(const Scene& scene, Canvas& canvas) {
    const auto height = static_cast<float>(canvas.Height());
    const float thickness = std::max(1.0F, height / 160);
    for (size_t i = 0; i < scene.faceCount; ++i) {
        const FaceLayout layout = LayOut(scene.faces[i], height);
        canvas.DrawFrame(layout.box, thickness, kMark);
        for (const Point& landmark : layout.landmarks)
            canvas.FillEllipse({landmark, thickness, thickness, 0}, kMark);
    }
}

}  // namespace zarvo::host
