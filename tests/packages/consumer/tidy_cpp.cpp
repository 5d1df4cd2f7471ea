// Two cubes become one solid that is closed by index, in C++.
#include <orva/tidy.hpp>

#include <cstdio>

namespace {

// The cube of edge 2 from one corner on.
orva::tidy::Solid cube(double from) {
    orva::tidy::Solid solid;
    for (int c = 0; c < 8; ++c) {
        solid.vertices.push_back({from + 2.0 * (c & 1), from + 2.0 * ((c >> 1) & 1), from + 2.0 * ((c >> 2) & 1)});
    }
    solid.faces = {{0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4}, {1, 5, 4},
                   {2, 6, 3}, {3, 6, 7}, {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    return solid;
}

} // namespace

int main() {
    orva::tidy::Solid result;
    const orva::tidy::Report report = orva::tidy::unionSolid(result, std::vector<orva::tidy::Solid>{cube(0), cube(1)});
    std::printf("%d triangles%s\n", static_cast<int>(result.faces.size()), report.closed ? ", closed" : "");
}
