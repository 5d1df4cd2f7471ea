#include "pictures.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace orva::program {

Image decodePng(std::string_view bytes) {
    int width = 0;
    int height = 0;
    int channels = 0;
    unsigned char* const pixels = stbi_load_from_memory(reinterpret_cast<const unsigned char*>(bytes.data()),
                                                        static_cast<int>(bytes.size()), &width, &height, &channels, 4);
    if (pixels == nullptr) {
        ADD_FAILURE() << "no picture: " << stbi_failure_reason();
        return {};
    }
    Image image{static_cast<std::size_t>(width), static_cast<std::size_t>(height), {}};
    image.pixels.assign(pixels, pixels + 4 * image.width * image.height);
    stbi_image_free(pixels);
    return image;
}

Difference differenceOf(const Image& a, const Image& b) {
    constexpr int visible = 25;
    double sum = 0.0;
    std::size_t differing = 0;
    for (std::size_t i = 0; i < a.pixels.size(); i += 4) {
        bool differs = false;
        for (std::size_t k = i; k < i + 4; ++k) {
            const int difference = std::abs(a.pixels[k] - b.pixels[k]);
            sum += difference;
            differs = differs || difference > visible;
        }
        differing += differs ? 1 : 0;
    }
    const auto values = static_cast<double>(a.pixels.size());
    return {sum / values, 4.0 * static_cast<double>(differing) / values};
}

void expectStored(const std::string& name, std::string_view bytes) {
    const std::string file = "program/pictures/" + name + ".png";
    if (std::getenv("ORVA_RECORD_PICTURES") != nullptr) {
        std::ofstream(file, std::ios::binary) << bytes;
        return;
    }
    std::ifstream stream(file, std::ios::binary);
    const std::string stored{std::istreambuf_iterator<char>(stream), {}};
    const Image expected = decodePng(stored);
    const Image actual = decodePng(bytes);
    ASSERT_EQ(actual.width, expected.width) << file;
    ASSERT_EQ(actual.height, expected.height) << file;
    const Difference difference = differenceOf(actual, expected);
    EXPECT_LT(difference.mean, 0.2) << file;
    EXPECT_LT(difference.share, 0.001) << file;
}

} // namespace orva::program
