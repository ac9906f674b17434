#include "host/ctl/Png.h"

#include <png.h>

namespace zarvo::host::ctl {

std::vector<uint8_t> EncodePng(const GreyImage& image, std::string& error) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = image.width;
    png.height = image.height;
    png.format = PNG_FORMAT_GRAY;
    // Pictures come several times a second: a few percent more bytes for a third of the time.
    png.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(png);
    std::vector<uint8_t> bytes(size);
    const int written = png_image_write_to_memory(&png, bytes.data(), &size, 0, image.pixels.data(),
                                                  image.stride, nullptr);
    if (written == 0) error = png.message;
    bytes.resize(written == 0 ? 0 : size);
    return bytes;
}

}  // namespace zarvo::host::ctl
