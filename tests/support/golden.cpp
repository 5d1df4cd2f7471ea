#include "golden.hpp"

#include <fstream>
#include <stdexcept>
#include <string>

namespace orva::test {

namespace {

class Reader {
public:
    Reader() : file_("golden/cases.bin", std::ios::binary) {
        if (!file_) throw std::runtime_error("golden/cases.bin cannot be opened: tests run in the folder tests/");
    }
    void read(void* to, std::size_t bytes) {
        if (!file_.read(static_cast<char*>(to), static_cast<std::streamsize>(bytes))) {
            throw std::runtime_error("golden/cases.bin ends early");
        }
    }
    std::uint32_t number() {
        std::uint32_t value = 0;
        read(&value, sizeof value);
        return value;
    }
    Mesh mesh() {
        Mesh mesh;
        mesh.vertices.resize(number());
        read(mesh.vertices.data(), mesh.vertices.size() * sizeof(Vertex));
        return mesh;
    }

private:
    std::ifstream file_;
};

} // namespace

std::vector<GoldenCase> readGoldenCases() {
    Reader reader;
    std::string magic(8, '\0');
    reader.read(magic.data(), magic.size());
    if (magic != "ORVAGLD1") throw std::runtime_error("golden/cases.bin is something else");
    std::vector<GoldenCase> cases(reader.number());
    for (GoldenCase& golden : cases) {
        golden.operation = static_cast<GoldenOperation>(reader.number());
        golden.inputs.resize(reader.number());
        for (Mesh& input : golden.inputs) input = reader.mesh();
        golden.result = reader.mesh();
    }
    return cases;
}

} // namespace orva::test
