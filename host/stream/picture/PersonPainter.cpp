#include "host/stream/picture/PersonPainter.h"

#include <array>
#include <cmath>

#include "host/stream/picture/FaceLayout.h"
#include "host/stream/picture/HeadShape.h"
#include "host/stream/scene/People.h"

namespace zarvo::host {
namespace {

using Hair = Person::Hair;

constexpr Color kEyeWhite = Color::FromRgb(236, 232, 228);
constexpr Color kPupil = Color::FromRgb(18, 16, 16);
constexpr Color kGlint = Color::FromRgb(255, 255, 255);
constexpr Color kFrames = Color::FromRgb(44, 40, 44);

/** Draws one person, back to front. Lengths are in half heads, as HeadShape's are. */
class PersonPainter {
  public:
    PersonPainter(const Scene& scene, const Face& face, Canvas& canvas)
        : mFace(face),
          mPerson(PersonNumber(face.person)),
          mLight(scene.light),
          mTilt(scene.rotation),
          mCanvas(canvas),
          mHead(face, static_cast<float>(canvas.Height())),
          mOutline(mHead.Outline()),
          mLayout(LayOut(face, static_cast<float>(canvas.Height()))) {}

    void Draw() {
        DrawHairBehind();
        DrawBody();
        DrawSkull();
        DrawMask();
        if (mPerson.beard) DrawBeard();
        DrawMouth();
        DrawNose();
        for (const auto eye : {FaceLayout::kLeftEye, FaceLayout::kRightEye})
            DrawEye(eye);
        DrawBrows();
        if (mPerson.glasses) DrawGlasses();
        DrawHairInFront();
    }

  private:
    /** A colour in the room's light; `slope` makes it lighter towards the upper left, by that share
     * for each half head. */
    Ink Shaded(Color color, float light = 1, float slope = 0) const {
        const float change = -slope * static_cast<float>(color.y) / mHead.Unit();
        return {color.Lit(light * mLight), change, change};
    }
    void Patch(Point middle, float halfWidth, float halfHeight, const Ink& ink, float angle = 0) {
        Ellipse patch = mHead.Patch(middle, halfWidth, halfHeight);
        patch.angle += angle;
        mCanvas.FillEllipse(patch, ink);
    }
    /** An ellipse about the head's middle that rolls but does not turn with it. */
    Ellipse Around(float right, float down, float halfWidth, float halfHeight) const {
        const float unit = mHead.Unit();
        return {mHead.Beside(mOutline.centre, right * unit, down * unit), halfWidth * unit,
                halfHeight * unit, mFace.roll};
    }
    /** How far the back of the head shows at a side. */
    float Back() const { return -std::sin(Radians(mFace.yaw)); }
    /** The body's points do not follow the head. */
    Point Body(float right, float down) const {
        const float unit = mHead.Unit();
        const Point point{mOutline.centre.x + right * unit, mOutline.centre.y + down * unit};
        return Turned(point, mTilt, mOutline.centre);
    }

    void DrawHairBehind() {
        if (mPerson.hairCut == Hair::kLong)
            mCanvas.FillEllipse(Around(0.25F * Back(), 0.38F, 0.94F, 1.26F), HairInk(0.82F));
        if (mPerson.hairCut == Hair::kBun)
            mCanvas.FillEllipse(Around(0.55F * Back(), -1.05F, 0.36F, 0.28F), HairInk(0.85F));
    }

    void DrawBody() {
        const Ink shirt = Shaded(mPerson.shirt, 0.96F, 0.07F);
        const Ink dark = Shaded(mPerson.shirt, 0.7F);
        const Ink neck = Shaded(mPerson.skin, 0.80F);
        mCanvas.FillEllipse({Body(0, 2.66F), 1.55F * mHead.Unit(), 1.28F * mHead.Unit(), mTilt},
                            shirt);
        mCanvas.FillEllipse({Body(0, 1.42F), 0.56F * mHead.Unit(), 0.32F * mHead.Unit(), mTilt},
                            dark);
        mCanvas.FillEllipse({Body(0, 1.36F), 0.48F * mHead.Unit(), 0.29F * mHead.Unit(), mTilt},
                            neck);
        mCanvas.FillPolygon(std::array{Body(-0.34F, 0.5F), Body(0.34F, 0.5F), Body(0.42F, 1.4F),
                                       Body(-0.42F, 1.4F)},
                            neck);
        mCanvas.FillEllipse({Body(0, 0.82F), 0.46F * mHead.Unit(), 0.36F * mHead.Unit(), mTilt},
                            Shaded(mPerson.skin, 0.66F));
    }

    Ink HairInk(float light = 1) const { return Shaded(mPerson.hair, light, 0.18F); }
    Ink SkinInk(float light = 1) const { return Shaded(mPerson.skin, light, 0.14F); }

    void DrawSkull() {
        const bool allHair = mPerson.hairCut == Hair::kLong;
        mCanvas.FillEllipse(mOutline, allHair ? HairInk(0.9F) : SkinInk(0.84F));
        if (mPerson.hairCut != Hair::kNone) {
            Ellipse cap = mOutline;
            cap.centre = mHead.Beside(cap.centre, 0, -0.05F * mHead.Unit());
            cap.halfWidth *= 1.07F;
            cap.halfHeight *= 1.04F;
            mCanvas.FillIntersection(cap, Around(0.55F * Back(), -0.62F, 1.1F, 0.95F), HairInk());
        }
        if (allHair) return;
        for (const float side : {-0.75F, 0.75F})
            Patch({side, 0.08F}, 0.1F * mHead.Seen(side, 0.08F), 0.2F, SkinInk(0.88F));
    }

    /** The skin of the face, which turns within the head's outline. */
    void DrawMask() {
        const Ellipse upper = mHead.Patch({0, 0.14F}, 0.69F, 0.82F);
        mCanvas.FillEllipse(upper, SkinInk());
        mCanvas.FillEllipse(mHead.Patch({0, 0.44F}, 0.58F, 0.57F), SkinInk(0.985F));
    }

    void DrawBeard() {
        mCanvas.FillIntersection(mHead.Patch({0, 0.52F}, 0.63F, 0.52F),
                                 mHead.Patch({0, 0.3F}, 0.69F, 0.8F), HairInk(1.1F));
        Patch({0, 0.16F}, 0.59F, 0.42F, SkinInk());
    }

    void DrawMouth() {
        const Color lips = Color::FromRgb(176, 92, 86);
        const float light = static_cast<float>(mPerson.skin.y) / 190;
        if (mPerson.beard) Patch({0, 0.47F}, 0.30F, 0.08F, HairInk(1.1F));
        Patch({0, 0.585F}, 0.15F, 0.052F, Shaded(lips, 1.05F * light));
        // The halves rise to the corners: a faint smile.
        for (const float side : {-1.0F, 1.0F}) {
            Patch({0.095F * side, 0.55F}, 0.12F, 0.034F, Shaded(lips, 0.88F * light), -9 * side);
            Patch({0.105F * side, 0.558F}, 0.115F, 0.012F, Shaded(lips, 0.5F * light), -9 * side);
        }
    }

    void DrawNose() {
        const Point tip = mLayout.landmarks[FaceLayout::kNose];
        const float unit = mHead.Unit();
        const Point top = mHead.At(0, -0.1F, 0.02F);
        const Point right = mHead.Beside(tip, 0.1F * unit, 0.03F * unit);
        mCanvas.FillPolygon(std::array{top, right, tip}, SkinInk(0.9F));
        mCanvas.FillEllipse(
                {mHead.Beside(tip, 0, 0.035F * unit), 0.13F * unit, 0.05F * unit, mFace.roll},
                SkinInk(0.8F));
        mCanvas.FillEllipse({tip, 0.075F * unit, 0.06F * unit, mFace.roll}, SkinInk(1.04F));
    }

    void DrawEye(FaceLayout::Landmark eye) {
        const float side = eye == FaceLayout::kLeftEye ? -0.31F : 0.31F;
        const float open = 0.076F * mFace.eyeOpenness;
        Patch({side, -0.09F}, 0.2F, 0.135F, SkinInk(0.9F));
        Patch({side, -0.1F}, 0.18F, open + 0.018F, SkinInk(0.36F));
        if (open < 0.01F) return;
        const Ellipse opening = mHead.Patch({side, -0.08F}, 0.165F, open);
        mCanvas.FillEllipse(opening, Shaded(kEyeWhite));
        const float unit = mHead.Unit();
        const Point pupil = PupilOf(opening.centre);
        const auto disc = [&](Point middle, float radius, Color color) {
            mCanvas.FillIntersection({middle, radius * unit, radius * unit}, opening,
                                     Shaded(color));
        };
        disc(pupil, 0.092F, mPerson.iris.Lit(0.55F));
        disc(pupil, 0.078F, mPerson.iris);
        disc(pupil, 0.040F, kPupil);
        disc({pupil.x - 0.028F * unit, pupil.y - 0.03F * unit}, 0.018F, kGlint);
    }

    /** The pupil is on a ball that looks into the room, in an opening that turns with the head. */
    Point PupilOf(Point opening) const {
        const float radius = 0.19F * mHead.Unit();
        const Point middle = mHead.Beside(opening, -radius * std::sin(Radians(mFace.yaw)),
                                          -radius * std::sin(Radians(mFace.pitch)));
        return {middle.x + radius * std::sin(Radians(mFace.gazeYaw)),
                middle.y + radius * std::sin(Radians(mFace.gazePitch))};
    }

    void DrawBrows() {
        const Color color = mPerson.hairCut == Hair::kNone ? mPerson.hair.Lit(0.8F) : mPerson.hair;
        Patch({-0.32F, -0.31F}, 0.2F, 0.036F, Shaded(color, 0.8F), -5);
        Patch({0.32F, -0.31F}, 0.2F, 0.036F, Shaded(color, 0.8F), 5);
    }

    void DrawGlasses() {
        const Ink ink = Shaded(kFrames);
        for (const float side : {-0.31F, 0.31F})
            mCanvas.FillRing(mHead.Patch({side, -0.07F}, 0.25F, 0.2F),
                             mHead.Patch({side, -0.07F}, 0.222F, 0.175F), ink);
        Patch({0, -0.11F}, 0.075F, 0.016F, ink);
        for (const float side : {-1.0F, 1.0F}) {
            if (mHead.Seen(0.72F * side, -0.08F) == 0) continue;
            mCanvas.DrawLine(mHead.At(0.55F * side, -0.1F), mHead.At(0.74F * side, -0.06F),
                             0.03F * mHead.Unit(), ink);
        }
    }

    void DrawHairInFront() {
        const bool fringe = mPerson.hairCut == Hair::kParted || mPerson.hairCut == Hair::kLong;
        if (fringe) {
            Patch({-0.34F, -0.66F}, 0.36F, 0.2F, HairInk(1.04F), -28);
            Patch({0.22F, -0.68F}, 0.44F, 0.2F, HairInk(), 22);
        }
        if (mPerson.hairCut != Hair::kLong) return;
        for (const float side : {-1.0F, 1.0F}) {
            const float seen = mHead.Seen(0.72F * side, 0.1F);
            Ellipse lock = mHead.Patch({0.72F * side, 0.1F}, 0.02F, 0.8F);
            lock.halfWidth = 0.16F * seen * mHead.Unit();
            lock.centre = mHead.Beside(lock.centre, 0, 0.2F * mHead.Unit());
            lock.angle += -6 * side;
            mCanvas.FillEllipse(lock, HairInk(0.92F));
        }
    }

    const Face& mFace;
    const Person& mPerson;
    const float mLight;
    const float mTilt;
    Canvas& mCanvas;
    const HeadShape mHead;
    const Ellipse mOutline;
    const FaceLayout mLayout;
};

}  // namespace

void DrawPerson(const Scene& scene, const Face& face, Canvas& canvas) {
    PersonPainter(scene, face, canvas).Draw();
}

}  // namespace zarvo::host
