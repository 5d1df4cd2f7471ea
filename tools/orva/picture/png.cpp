#include "picture/png.hpp"

#include <new>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace orva::program {

std::string pngOf(const Image& image) {
    bool opaque = true;
    for (std::size_t i = 3; i < image.pixels.size(); i += 4) opaque = opaque && image.pixels[i] == 255;
    std::vector<std::uint8_t> solid;
    if (opaque) {
        solid.reserve(image.pixels.size() / 4 * 3);
        for (std::size_t i = 0; i < image.pixels.size(); ++i) {
            if (i % 4 != 3) solid.push_back(image.pixels[i]);
        }
    }
    const int channels = opaque ? 3 : 4;

    std::string bytes;
    const auto append = [](void* context, void* data, int size) {
        static_cast<std::string*>(context)->append(static_cast<const char*>(data), static_cast<std::size_t>(size));
    };
    const int width = static_cast<int>(image.width);
    const int written = stbi_write_png_to_func(append, &bytes, width, static_cast<int>(image.height), channels,
                                               (opaque ? solid : image.pixels).data(), width * channels);
    if (written == 0) throw std::bad_alloc(); // nothing else can go wrong
    return bytes;
}

} // namespace orva::program
