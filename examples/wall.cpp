// A wall minus its windows, in C++.
#include "box.hpp"

#include <orva/bspcsg.hpp>

#include <cstdio>

int main() {
    const orva::types::Mesh<double> wall = box({0, 0, 0}, {10, 0.3, 3});
    std::vector<orva::types::Mesh<double>> windows;
    for (int i = 0; i < 9; ++i) windows.push_back(box({i + 0.7, -1, 1}, {i + 1.3, 1, 2}));
    orva::types::Mesh<double> result;
    orva::bspcsg::subtractMultiMesh(result, wall, windows);
    std::printf("%zu triangles\n", result.vertices.size() / 3);
}
