#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "tests/stream/StreamListener.h"

namespace zarvo::host {
namespace {

/** A picture of three bytes per pixel, red, green and blue, for people to look at. */
struct RgbPicture {
    RgbPicture(size_t columns, size_t rows) : width(columns), bytes(columns * rows * 3, '\0') {}

    /** Copies an image in full colour to a place, every `step`th pixel of every `step`th row. */
    void Paste(const aov_image_info& image, size_t left, size_t top, size_t step = 1) {
        for (size_t row = 0; row < image.height; row += step)
            for (size_t column = 0; column < image.stride; column += step)
                Put(image, row, column, ((top + row / step) * width + left + column / step) * 3);
    }
    void Write(const std::string& name) const {
        const auto path = std::filesystem::path(AON_PICTURE_DIR) / (name + ".ppm");
        std::ofstream file(path, std::ios::binary);
        file << "P6\n" << width << " " << bytes.size() / 3 / width << "\n255\n" << bytes;
        EXPECT_TRUE(file.flush()) << path;
    }

    size_t width;
    std::string bytes;

  private:
    void Put(const aov_image_info& image, size_t row, size_t column, size_t at) {
        const uint8_t* chroma = image.pixels + size_t{image.stride} * image.height;
        const uint8_t* pair = chroma + row / 2 * image.stride + column / 2 * 2;
        const double y = image.pixels[row * image.stride + column];
        const double u = pair[0] - 128.0, v = pair[1] - 128.0;
        for (const double channel : {y + 1.402 * v, y - 0.344 * u - 0.714 * v, y + 1.772 * u})
            bytes[at++] =
                    static_cast<char>(static_cast<uint8_t>(std::clamp(channel + 0.5, 0., 255.)));
    }
};

void Write(const aov_image_info& image, const std::string& name) {
    RgbPicture picture(image.stride, image.height);
    picture.Paste(image, 0, 0);
    picture.Write(name);
}

TEST_F(StreamTest, AMinuteOfTheSceneBecomesPictureFiles) {
    constexpr size_t kStep = 2, kWidth = 640 / kStep, kHeight = 480 / kStep, kColumns = 4;
    RgbPicture sheet(kColumns * kWidth, 3 * kHeight);
    std::set<uint32_t> faceCounts;
    mListener->inEvent = [&](const aov_event* event) {
        // At 1 frame per second, every fifth one; and the first by itself.
        if (event->frame_id % 5 != 0) return;
        const size_t place = event->frame_id / 5;
        sheet.Paste(event->imageInfo, place % kColumns * kWidth, place / kColumns * kHeight, kStep);
        faceCounts.insert(event->output[199'424]);
        if (place != 0) return;
        Write(event->imageInfo, "frame");
        Write(event->debugImageInfo, "frame-debug");
    };
    mControl.SetSeed(1);
    ASSERT_TRUE(Start(mListener, 1));
    for (int frame = 0; frame < 60; ++frame)
        EXPECT_TRUE(mControl.DeliverOne());
    sheet.Write("scene");
    EXPECT_EQ(faceCounts, (std::set<uint32_t>{0, 1, 2}));
}

}  // namespace
}  // namespace zarvo::host
