#include "host/stream/picture/Room.h"

#include <array>
#include <cmath>
#include <vector>

namespace zarvo::host {
namespace {

constexpr Color kWall = Color::FromRgb(172, 166, 152);
constexpr Color kWindowFrame = Color::FromRgb(226, 224, 218);
constexpr Color kSky = Color::FromRgb(206, 224, 240);
constexpr Color kTrees = Color::FromRgb(120, 146, 112);
constexpr Color kPictureFrame = Color::FromRgb(94, 70, 50);
constexpr Color kSunset = Color::FromRgb(206, 168, 120);
constexpr Color kSea = Color::FromRgb(70, 104, 128);
constexpr Color kWood = Color::FromRgb(116, 88, 64);

/** One upright rectangle of the room: in parts of the picture's width and height. */
struct Panel {
    float left, top, right, bottom;
    Color color;
    /** Change of luma from top to bottom. */
    float fall = 0;
};

constexpr Panel kPanels[] = {
        {0.03F, 0.07F, 0.30F, 0.56F, kWindowFrame},
        {0.045F, 0.09F, 0.158F, 0.54F, kSky, 12},
        {0.172F, 0.09F, 0.285F, 0.54F, kSky, 12},
        {0.045F, 0.40F, 0.158F, 0.54F, kTrees, -20},
        {0.172F, 0.43F, 0.285F, 0.54F, kTrees, -20},
        {0.02F, 0.56F, 0.31F, 0.585F, kWindowFrame.Lit(0.86F)},
        {0.70F, 0.12F, 0.92F, 0.40F, kPictureFrame},
        {0.716F, 0.142F, 0.904F, 0.378F, kSunset, -30},
        {0.716F, 0.28F, 0.904F, 0.378F, kSea, -24},
        {-0.2F, 0.74F, 1.2F, 0.765F, kWood.Lit(1.2F)},
        {-0.2F, 0.765F, 1.2F, 1.3F, kWood, -30},
};

/** Lighter towards the window and darker towards the floor. */
void DrawWall(const Scene& scene, Canvas& canvas) {
    const auto width = static_cast<float>(canvas.Width());
    const auto height = static_cast<float>(canvas.Height());
    std::vector<float> rows(canvas.Height());
    std::vector<float> columns(canvas.Width());
    for (size_t y = 0; y < rows.size(); ++y)
        rows[y] = 16 - 36 * static_cast<float>(y) / height;
    for (size_t x = 0; x < columns.size(); ++x) {
        const float fromWindow = static_cast<float>(x) / width - 0.16F;
        columns[x] = 30 * std::exp(-9 * fromWindow * fromWindow) - 8;
    }
    canvas.FillShaded(kWall.Lit(scene.light), rows, columns);
}

}  // namespace

void DrawRoom(const Scene& scene, Canvas& canvas) {
    DrawWall(scene, canvas);
    const auto width = static_cast<float>(canvas.Width());
    const auto height = static_cast<float>(canvas.Height());
    const auto at = [&](float x, float y) {
        return Turned({x * width, y * height}, scene.rotation, {0.5F * width, 0.5F * height});
    };
    for (const Panel& panel : kPanels) {
        const float fall = panel.fall / ((panel.bottom - panel.top) * height);
        canvas.FillPolygon(std::array{at(panel.left, panel.top), at(panel.right, panel.top),
                                      at(panel.right, panel.bottom), at(panel.left, panel.bottom)},
                           {panel.color.Lit(scene.light), 0, fall});
    }
}

}  // namespace zarvo::host
