#include "same.hpp"

#include <algorithm>
#include <ios>
#include <queue>
#include <sstream>
#include <string>
#include <utility>

namespace orva::equivalence {

namespace {

bool same(const reference::Plane& a, const reference::Plane& b) {
    return test::sameBits(a.normal.x, b.normal.x) && test::sameBits(a.normal.y, b.normal.y) &&
           test::sameBits(a.normal.z, b.normal.z) && test::sameBits(a.w, b.w);
}

bool same(const std::vector<types::Vertex>& a, const std::vector<types::Vertex>& b) {
    const auto sameVertex = [](const types::Vertex& x, const types::Vertex& y) { return test::sameBits(x, y); };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameVertex);
}

std::string text(const reference::Plane& plane) {
    std::ostringstream out;
    out << std::hexfloat << plane.normal.x << " " << plane.normal.y << " " << plane.normal.z << " w " << plane.w;
    return out.str();
}

struct Pair {
    const reference::Node* a;
    const reference::Node* b;
    std::string way; ///< f and b for front and back
};

} // namespace

testing::AssertionResult same(const reference::PolygonList& a, const reference::PolygonList& b) {
    if (a.size() != b.size()) return testing::AssertionFailure() << a.size() << " polygons against " << b.size();
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!same(a[i].plane, b[i].plane)) {
            return testing::AssertionFailure()
                   << "polygon " << i << ", plane\n  " << text(a[i].plane) << " against\n  " << text(b[i].plane);
        }
        if (!same(a[i].vertices, b[i].vertices)) {
            return testing::AssertionFailure()
                   << "polygon " << i << ", "
                   << test::sameBits(test::Mesh{a[i].vertices}, test::Mesh{b[i].vertices}).message();
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult same(const reference::Node& a, const reference::Node& b) {
    std::queue<Pair> open;
    open.push({&a, &b, "root"});
    while (!open.empty()) {
        const Pair pair = std::move(open.front());
        open.pop();
        if (pair.a == nullptr && pair.b == nullptr) continue;
        if (pair.a == nullptr || pair.b == nullptr) {
            return testing::AssertionFailure()
                   << "only the " << (pair.a == nullptr ? "second" : "first") << " tree has a node at " << pair.way;
        }
        if (!same(pair.a->plane, pair.b->plane)) {
            return testing::AssertionFailure() << "plane of the node at " << pair.way << "\n  " << text(pair.a->plane)
                                               << " against\n  " << text(pair.b->plane);
        }
        if (const auto polygons = same(pair.a->polygons, pair.b->polygons); !polygons) {
            return testing::AssertionFailure() << "node at " << pair.way << ": " << polygons.message();
        }
        open.push({pair.a->front.get(), pair.b->front.get(), pair.way + "f"});
        open.push({pair.a->back.get(), pair.b->back.get(), pair.way + "b"});
    }
    return testing::AssertionSuccess();
}

} // namespace orva::equivalence
