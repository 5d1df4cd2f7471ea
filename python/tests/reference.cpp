// What the C++ interface gives: reads requests from standard input, writes a result for each to standard output.
//
// A request is a u32 operation, a u32 number of meshes, and the meshes; a result is a mesh. A mesh is a u32 number of
// vertices and their doubles as they are in memory. Operations 0 to 5: union, subtract, intersect of two; one base
// minus the rest in turn, as one union, as one union in parallel.
#include <orva/bspcsg.hpp>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using Mesh = orva::types::Mesh<double>;

bool read(void* to, std::size_t size, std::size_t count) {
    return std::fread(to, size, count, stdin) == count;
}

std::uint32_t number() {
    std::uint32_t value = 0;
    if (!read(&value, sizeof value, 1)) std::exit(1);
    return value;
}

Mesh mesh() {
    Mesh mesh;
    mesh.vertices.resize(number());
    if (!read(mesh.vertices.data(), sizeof mesh.vertices[0], mesh.vertices.size())) std::exit(1);
    return mesh;
}

Mesh result(std::uint32_t operation, std::vector<Mesh> inputs) {
    using namespace orva::bspcsg;
    Mesh result;
    const Mesh base = std::move(inputs.front());
    inputs.erase(inputs.begin());
    switch (operation) {
    case 0:
        unionMesh(result, base, inputs.at(0));
        break;
    case 1:
        subtractMesh(result, base, inputs.at(0));
        break;
    case 2:
        intersectMesh(result, base, inputs.at(0));
        break;
    case 3:
        subtractMultiMesh(result, base, inputs);
        break;
    case 4:
        subtractMultiUnionMesh(result, base, inputs);
        break;
    case 5:
        subtractMultiUnionMeshParallel(result, base, inputs);
        break;
    default:
        std::exit(1);
    }
    return result;
}

} // namespace

int main() {
    std::uint32_t operation = 0;
    while (read(&operation, sizeof operation, 1)) {
        std::vector<Mesh> inputs(number());
        for (Mesh& input : inputs) input = mesh();
        const Mesh output = result(operation, std::move(inputs));
        const auto count = static_cast<std::uint32_t>(output.vertices.size());
        std::fwrite(&count, sizeof count, 1, stdout);
        std::fwrite(output.vertices.data(), sizeof output.vertices[0], output.vertices.size(), stdout);
        std::fflush(stdout);
    }
}
