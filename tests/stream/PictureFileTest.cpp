#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/stream/StreamListener.h"

namespace zarvo::host {
namespace {

/** The image in full colour, three bytes per pixel. */
std::string ToRgb(const aov_image_info& image) {
    std::string rgb;
    const uint8_t* chroma = image.pixels + size_t{image.stride} * image.height;
    for (size_t row = 0; row < image.height; ++row) {
        for (size_t column = 0; column < image.stride; ++column) {
            const double luma = image.pixels[row * image.stride + column];
            const uint8_t* pair = chroma + row / 2 * image.stride + column / 2 * 2;
            const double u = pair[0] - 128.0, v = pair[1] - 128.0;
            for (const double channel :
                 {luma + 1.402 * v, luma - 0.344 * u - 0.714 * v, luma + 1.772 * u})
                rgb += static_cast<char>(static_cast<uint8_t>(std::clamp(channel + 0.5, 0., 255.)));
        }
    }
    return rgb;
}

/** Writes a picture for people to look at, and gives the size of its file. */
uintmax_t Write(const aov_image_info& image, const std::string& name) {
    const std::filesystem::path path = std::filesystem::path(AON_PICTURE_DIR) / (name + ".ppm");
    std::ofstream(path, std::ios::binary) << "P6\n"
                                          << image.stride << " " << image.height << "\n255\n"
                                          << ToRgb(image);
    return std::filesystem::file_size(path);
}

TEST_F(StreamTest, ADeliveredImageBecomesAPictureFile) {
    mListener->inEvent = [](const aov_event* event) {
        const std::string name = "frame" + std::to_string(event->frame_id);
        EXPECT_EQ(Write(event->imageInfo, name), 15u + 640u * 480u * 3u);
        EXPECT_EQ(Write(event->debugImageInfo, name + "-debug"), 15u + 640u * 480u * 3u);
    };
    ASSERT_TRUE(Start(mListener, 1));
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(mControl.DeliverOne());
}

}  // namespace
}  // namespace zarvo::host
