#include "off.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace orva::bench {

namespace {

using types::Vec3;

// The next line with something in it that is no comment.
std::istringstream nextLine(std::ifstream& file, const std::string& name) {
    std::string line;
    while (std::getline(file, line)) {
        line.resize(std::min(line.find('#'), line.size()));
        if (line.find_first_not_of(" \t\r") != std::string::npos) return std::istringstream(line);
    }
    throw std::runtime_error(name + ": ends early");
}

} // namespace

Mesh readOff(const std::string& name) {
    std::ifstream file(name);
    std::string magic;
    std::size_t vertices = 0;
    std::size_t faces = 0;
    nextLine(file, name) >> magic;
    // Colours and normals stand behind the coordinates.
    if (magic != "OFF" && magic != "COFF" && magic != "NOFF") throw std::runtime_error(name + ": not OFF");
    if (!(nextLine(file, name) >> vertices >> faces)) throw std::runtime_error(name + ": no counts");

    std::vector<Vec3> positions(vertices);
    for (Vec3& p : positions) {
        if (!(nextLine(file, name) >> p.x >> p.y >> p.z)) throw std::runtime_error(name + ": not a vertex");
    }
    Mesh mesh;
    for (std::size_t i = 0; i < faces; ++i) {
        std::istringstream line = nextLine(file, name);
        std::size_t count = 0;
        line >> count;
        std::vector<std::size_t> corners(count);
        for (std::size_t& corner : corners) line >> corner;
        if (!line || count < 3) throw std::runtime_error(name + ": not a face");
        for (std::size_t k = 2; k < count; ++k) {
            for (const std::size_t corner : {corners[0], corners[k - 1], corners[k]}) {
                mesh.vertices.push_back({positions.at(corner), {}, {}});
            }
        }
    }
    return mesh;
}

bool isClosed(const Mesh& mesh) {
    std::map<std::tuple<double, double, double>, std::uint32_t> places;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> edges;
    for (std::size_t i = 0; i + 2 < mesh.vertices.size(); i += 3) {
        std::array<std::uint32_t, 3> face{};
        for (std::size_t k = 0; k < 3; ++k) {
            const Vec3& p = mesh.vertices[i + k].pos;
            face[k] = places.try_emplace({p.x, p.y, p.z}, static_cast<std::uint32_t>(places.size())).first->second;
        }
        for (std::size_t k = 0; k < 3; ++k) edges.emplace_back(face[k], face[(k + 1) % 3]);
    }
    std::sort(edges.begin(), edges.end());
    if (std::adjacent_find(edges.begin(), edges.end()) != edges.end()) return false;
    return std::all_of(edges.begin(), edges.end(), [&](const auto& edge) {
        return edge.first != edge.second &&
               std::binary_search(edges.begin(), edges.end(), std::pair(edge.second, edge.first));
    });
}

} // namespace orva::bench
