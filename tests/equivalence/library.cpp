#include "library.hpp"

#include <utility>
#include <vector>

namespace orva::equivalence {

namespace {

bspcsg::Plane convert(const reference::Plane& plane) {
    return {plane.normal, plane.w};
}
reference::Plane convert(const bspcsg::Plane& plane) {
    return {plane.normal, plane.w};
}

// Copies the tree below `root` into the new node `copy`, node by node and without recursion.
template <typename From, typename To, typename ConvertPolygons>
void copyTree(const From& root, To& copy, ConvertPolygons convertPolygons) {
    std::vector<std::pair<const From*, To*>> open{{&root, &copy}};
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        to->plane = convert(from->plane);
        to->polygons = convertPolygons(from->polygons);
        if (from->front) {
            to->front = std::make_unique<To>();
            open.push_back({from->front.get(), to->front.get()});
        }
        if (from->back) {
            to->back = std::make_unique<To>();
            open.push_back({from->back.get(), to->back.get()});
        }
    }
}

} // namespace

bspcsg::PolygonList toLibrary(const reference::PolygonList& polygons) {
    bspcsg::PolygonList list;
    list.reserve(polygons.size());
    for (const reference::Polygon& polygon : polygons) {
        bspcsg::Polygon each;
        each.vertices.reserve(polygon.vertices.size());
        for (const types::Vertex& vertex : polygon.vertices) each.vertices.push_back(vertex);
        each.plane = convert(polygon.plane);
        list.push_back(std::move(each));
    }
    return list;
}

reference::PolygonList toReference(const bspcsg::PolygonList& polygons) {
    reference::PolygonList list;
    list.reserve(polygons.size());
    for (const bspcsg::Polygon& polygon : polygons) {
        list.push_back({{polygon.vertices.begin(), polygon.vertices.end()}, convert(polygon.plane)});
    }
    return list;
}

bspcsg::NodePtr toLibrary(const reference::Node& tree) {
    auto copy = std::make_unique<bspcsg::Node>();
    copyTree(tree, *copy, [](const reference::PolygonList& polygons) { return toLibrary(polygons); });
    return copy;
}

reference::Tree toReference(const bspcsg::Node& tree) {
    auto copy = std::make_unique<reference::Node>();
    copyTree(tree, *copy, [](const bspcsg::PolygonList& polygons) { return toReference(polygons); });
    return copy;
}

} // namespace orva::equivalence
