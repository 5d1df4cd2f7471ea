#include "picture/render.hpp"

#include "measures/closedness.hpp"
#include "picture/light.hpp"
#include "picture/lines.hpp"
#include "picture/occlusion.hpp"
#include "picture/projection.hpp"
#include "picture/raster.hpp"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orva::program {

namespace {

// Triangles seen from inside, lines, and rims of open surfaces.
constexpr Color insideColor{0xB0, 0x3A, 0x7A};
constexpr Color lineColor{0x1E, 0x26, 0x33};
constexpr Color rimColor{0xE0, 0x10, 0x30};

constexpr float lineInk = 0.85F; // a full line lets this much less of what is below through

constexpr Color backgroundAbove{0xFC, 0xFC, 0xFD};
constexpr Color backgroundBelow{0xE4, 0xE8, 0xEE};

constexpr std::size_t perPixel = 3;
constexpr std::size_t bandHeight = 32; // pixels
constexpr std::size_t halo = 2;        // pixels above and below a band from which lines reach into it

// How large an opening looks from where it is looked through best, in square pixels: the rim runs around it.
float openingOf(const std::vector<ScreenLine>& rim) {
    const ScreenVector& origin = rim.front()[0];
    ScreenVector twice;
    for (const auto& [from, to] : rim) {
        const ScreenVector a{from.x - origin.x, from.y - origin.y, from.z - origin.z};
        const ScreenVector b{to.x - origin.x, to.y - origin.y, to.z - origin.z};
        twice = {twice.x + a.y * b.z - a.z * b.y, twice.y + a.z * b.x - a.x * b.z, twice.z + a.x * b.y - a.y * b.x};
    }
    return 0.5F * std::sqrt(twice.x * twice.x + twice.y * twice.y + twice.z * twice.z);
}

types::Mesh<double> joined(const Solid& solid) {
    types::Mesh<double> whole;
    for (const auto& mesh : solid) {
        const std::size_t triangles = mesh.vertices.size() / 3;
        whole.vertices.insert(whole.vertices.end(), mesh.vertices.begin(),
                              mesh.vertices.begin() + static_cast<std::ptrdiff_t>(3 * triangles));
    }
    return whole;
}

std::vector<types::Mesh<double>> meshesOf(const std::vector<Solid>& solids) {
    std::vector<types::Mesh<double>> meshes;
    for (const Solid& solid : solids) meshes.insert(meshes.end(), solid.begin(), solid.end());
    return meshes;
}

// note: cuts leave slits that are far thinner than a line. They are left out.
std::vector<ScreenLine> rimsOf(const std::vector<Solid>& solids, const Projection& projection) {
    std::vector<ScreenLine> lines;
    for (const Solid& solid : solids) {
        for (const Rim& rim : findRims(joined(solid), CLOSING_TOLERANCE)) {
            std::vector<ScreenLine> projected;
            for (const auto& [from, to] : rim) projected.push_back({projection(from), projection(to)});
            constexpr float smallest = 2.0F;
            if (openingOf(projected) >= smallest) lines.insert(lines.end(), projected.begin(), projected.end());
        }
    }
    return lines;
}

class Painter {
public:
    Painter(const std::vector<Solid>& solids, const std::vector<types::Mesh<double>>& meshes, const RenderOptions& of)
        : options(of), projection(meshes, of.view, of.width, of.height),
          triangles(projection.project(meshes)), image{of.width, of.height,
                                                       std::vector<std::uint8_t>(4 * of.width * of.height)} {
        for (std::size_t mesh = 0; mesh < meshes.size(); ++mesh) {
            colors.push_back(lightOf(mesh < options.colors.size() ? options.colors[mesh] : paletteColor(mesh)));
        }
        if (options.lines != Lines::None) rims = rimsOf(solids, projection);
        sortIntoBands();
    }

    Image paintAll() {
        findOcclusion();
        tbb::parallel_for(std::size_t{0}, bands.size(), [this](std::size_t band) { finish(band); });
        return std::move(image);
    }

private:
    void sortIntoBands() {
        bands.resize((options.height + bandHeight - 1) / bandHeight);
        const auto last = static_cast<double>(bands.size() - 1);
        for (std::size_t i = 0; i < triangles.size(); ++i) {
            const auto& [a, b, c] = triangles[i].corners;
            constexpr double margin = halo + 1;
            constexpr auto height = static_cast<double>(bandHeight);
            const double upper = (static_cast<double>(std::min({a.y, b.y, c.y})) - margin) / height;
            const double lower = (static_cast<double>(std::max({a.y, b.y, c.y})) + margin) / height;
            const auto from = static_cast<std::size_t>(std::clamp(upper, 0.0, last));
            const auto to = static_cast<std::size_t>(std::clamp(lower, 0.0, last));
            for (std::size_t band = from; band <= to; ++band) bands[band].push_back(static_cast<std::uint32_t>(i));
        }
    }

    std::size_t rowsOf(std::size_t band) const { return std::min(bandHeight, options.height - band * bandHeight); }

    // The whole picture at once, a sample to a pixel.
    void findOcclusion() {
        Samples whole = makeSamples(1, options.width, options.height, 0);
        tbb::parallel_for(std::size_t{0}, bands.size(), [&](std::size_t band) {
            const std::size_t first = band * bandHeight;
            const Samples part = paintBand(band, 1, rowsOf(band), static_cast<std::ptrdiff_t>(first));
            const auto place = static_cast<std::ptrdiff_t>(whole.at(first, 0));
            std::copy(part.triangles.begin(), part.triangles.end(), whole.triangles.begin() + place);
            std::copy(part.depths.begin(), part.depths.end(), whole.depths.begin() + place);
        });
        const double reach = 0.07 * static_cast<double>(std::min(options.width, options.height));
        occlusion = occlusionOf(whole, triangles, reach);
    }

    Samples paintBand(std::size_t band, std::size_t fineness, std::size_t rows, std::ptrdiff_t top) const {
        Samples samples = makeSamples(fineness, fineness * options.width, fineness * rows,
                                      static_cast<std::ptrdiff_t>(fineness) * top);
        for (const std::uint32_t i : bands[band]) paint(samples, triangles[i], i);
        return samples;
    }

    // ---- pixels, the last step ----

    struct Band {
        Samples samples;
        std::vector<float> lines;
        std::vector<float> rims; // or nothing, where there are none
    };

    void finish(std::size_t number) {
        const std::size_t first = number * bandHeight;
        const auto top = static_cast<std::ptrdiff_t>(first) - static_cast<std::ptrdiff_t>(halo);
        Band band;
        band.samples = paintBand(number, perPixel, rowsOf(number) + 2 * halo, top);
        band.lines = findLines(band.samples, triangles, options.lines);
        band.rims = drawRims(band.samples, rims);
        for (std::size_t row = 0; row < rowsOf(number); ++row) {
            const Light behind = backgroundAt(first + row);
            for (std::size_t column = 0; column < options.width; ++column) {
                const std::size_t pixel = (first + row) * options.width + column;
                const std::size_t corner = band.samples.at((halo + row) * perPixel, column * perPixel);
                finishPixel(band, corner, behind, pixel);
            }
        }
    }

    // The mean of its samples, of which the first is at `corner`.
    void finishPixel(const Band& band, std::size_t corner, const Light& behind, std::size_t pixel) {
        Light sum;
        float opaque = 0.0F;
        std::uint32_t last = Samples::none; // neighbours are mostly of one triangle
        Light surface;
        for (std::size_t y = 0; y < perPixel; ++y) {
            for (std::size_t x = 0; x < perPixel; ++x) {
                const std::size_t at = corner + y * band.samples.width + x;
                const std::uint32_t seen = band.samples.triangles[at];
                if (seen != last && seen != Samples::none) {
                    surface = surfaceLight(seen, pixel);
                    last = seen;
                }
                const float line = lineInk * band.lines[at];
                const float rim = band.rims.empty() ? 0.0F : band.rims[at];
                const Light& below = seen == Samples::none ? behind : surface;
                const Light inked = mix(mix(below, lineLight, line), rimLight, rim);

                // Where nothing is seen of a transparent background, lines are all there is.
                const bool clear = seen == Samples::none && options.background.transparent;
                const float cover = clear ? std::max(line, rim) : 1.0F;
                sum = sum + cover * (clear ? (rim > 0.0F ? rimLight : lineLight) : inked);
                opaque += cover;
            }
        }
        const Color color = colorOf(opaque > 0.0F ? (1.0F / opaque) * sum : Light{});
        constexpr auto count = static_cast<float>(perPixel * perPixel);
        image.pixels[4 * pixel] = color.red;
        image.pixels[4 * pixel + 1] = color.green;
        image.pixels[4 * pixel + 2] = color.blue;
        image.pixels[4 * pixel + 3] = static_cast<std::uint8_t>(opaque / count * 255.0F + 0.5F);
    }

    Light surfaceLight(std::uint32_t index, std::size_t pixel) const {
        const ScreenTriangle& triangle = triangles[index];
        const ScreenVector& n = triangle.normal;
        if (n.z >= 0.0F) return colors[triangle.mesh] * lightOn(n, occlusion[pixel]);
        return lightOf(insideColor) * lightOn({-n.x, -n.y, -n.z}, occlusion[pixel]);
    }

    Light backgroundAt(std::size_t row) const {
        if (options.background.color) return lightOf(*options.background.color);
        const float down = static_cast<float>(row) / static_cast<float>(options.height);
        return mix(lightOf(backgroundAbove), lightOf(backgroundBelow), down);
    }

    const RenderOptions& options;
    const Projection projection;
    const std::vector<ScreenTriangle> triangles;
    std::vector<std::vector<std::uint32_t>> bands; // for each the triangles that reach it
    std::vector<Light> colors;
    std::vector<ScreenLine> rims;
    std::vector<float> occlusion; // a value to a pixel
    const Light lineLight = lightOf(lineColor);
    const Light rimLight = lightOf(rimColor);
    Image image;
};

} // namespace

Image render(const std::vector<Solid>& solids, const RenderOptions& options) {
    return Painter(solids, meshesOf(solids), options).paintAll();
}

} // namespace orva::program
