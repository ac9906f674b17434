#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/stream/StreamListener.h"

namespace zarvo::host {
namespace {

char Channel(double value) {
    return static_cast<char>(static_cast<unsigned char>(std::clamp(value + 0.5, 0.0, 255.0)));
}

/** The image in full colour, three bytes per pixel. */
std::string ToRgb(const aov_image_info& image) {
    std::string rgb;
    const uint8_t* chroma = image.pixels + size_t{image.stride} * image.height;
    for (size_t row = 0; row < image.height; ++row) {
        for (size_t column = 0; column < image.stride; ++column) {
            const double luma = image.pixels[row * image.stride + column];
            const uint8_t* pair = chroma + row / 2 * image.stride + column / 2 * 2;
            const double u = pair[0] - 128.0;
            const double v = pair[1] - 128.0;
            rgb += Channel(luma + 1.402 * v);
            rgb += Channel(luma - 0.344 * u - 0.714 * v);
            rgb += Channel(luma + 1.772 * u);
        }
    }
    return rgb;
}

/** Writes the pictures of the events it gets, for people to look at. */
class PictureWriter : public IAovStreamCallback {
  public:
    void onCallback(aov_event* event) override {
        const std::string name = "frame" + std::to_string(event->frame_id);
        Write(event->imageInfo, name + ".ppm");
        Write(event->debugImageInfo, name + "-debug.ppm");
    }
    void NotifyOpen(int) override {}
    void NotifyClose(int) override {}

  private:
    static void Write(const aov_image_info& image, const std::string& name) {
        std::ofstream file(std::filesystem::path(AON_PICTURE_DIR) / name, std::ios::binary);
        file << "P6\n" << image.stride << " " << image.height << "\n255\n" << ToRgb(image);
        EXPECT_TRUE(file.flush().good()) << name;
    }
};

TEST_F(StreamTest, ADeliveredImageBecomesAPictureFile) {
    user_param param = Param(std::make_shared<PictureWriter>());
    param.frameRate = 1;
    ASSERT_TRUE(mStream.start(&param));
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(mControl.DeliverOne());
    const std::filesystem::path directory(AON_PICTURE_DIR);
    EXPECT_EQ(std::filesystem::file_size(directory / "frame3.ppm"), 15u + 640u * 480u * 3u);
}

}  // namespace
}  // namespace zarvo::host
