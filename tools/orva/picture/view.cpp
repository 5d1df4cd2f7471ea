#include "picture/view.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace orva::program {

namespace {

struct Preset {
    std::string_view name;
    double azimuth;
    double elevation;
};

constexpr std::array presets{
    Preset{"iso", View().azimuth, View().elevation},
    Preset{"front", 0, 0},
    Preset{"right", 90, 0},
    Preset{"back", 180, 0},
    Preset{"left", 270, 0},
    Preset{"top", 0, 90},
    Preset{"bottom", 0, -90},
};

// Libraries of mathematics differ in the last bit of a sine. A picture has no use for it.
double rounded(double value) {
    constexpr double steps = 1e9;
    return std::round(value * steps) / steps;
}

struct Direction {
    double sine;
    double cosine;
};

Direction directionOf(double degrees) {
    constexpr double radian = 0.017453292519943295;
    return {rounded(std::sin(degrees * radian)), rounded(std::cos(degrees * radian))};
}

bool parse(std::string_view text, double& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
}

} // namespace

std::optional<View> parseView(const std::string& text) {
    for (const Preset& preset : presets) {
        if (preset.name == text) return View{preset.azimuth, preset.elevation};
    }
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) return std::nullopt;
    View view;
    const std::string_view whole = text;
    if (!parse(whole.substr(0, comma), view.azimuth) || !parse(whole.substr(comma + 1), view.elevation)) {
        return std::nullopt;
    }
    if (std::abs(view.azimuth) > 360.0 || std::abs(view.elevation) > 90.0) return std::nullopt;
    return view;
}

Axes axesOf(const View& view) {
    const Direction around = directionOf(view.azimuth);
    const Direction above = directionOf(view.elevation);
    const auto inSpace = [&view](double x, double y, double z) {
        return view.up == Up::Z ? types::Vec3{x, y, z} : types::Vec3{x, z, -y};
    };
    return {inSpace(around.cosine, around.sine, 0.0),
            inSpace(-around.sine * above.sine, around.cosine * above.sine, above.cosine),
            inSpace(around.sine * above.cosine, -around.cosine * above.cosine, above.sine)};
}

} // namespace orva::program
