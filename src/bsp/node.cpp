#include "bsp/node.hpp"

#include <bit>
#include <utility>

namespace orva::bspcsg {

void* Node::operator new(std::size_t bytes) {
    return allocateNode(bytes);
}
void Node::operator delete(void* memory) noexcept {
    freeWorking(memory);
}

namespace {

// note: freeing a tree must not take memory, for it also runs while a failed allocation is on its way out. The queue
// that a breadth-first walk needs is therefore threaded through the nodes themselves: nobody reads their planes any
// more, so each keeps the pointer to the next one in the bits of its plane's w.
static_assert(sizeof(std::uintptr_t) <= sizeof(std::uint64_t));

void setNext(Node& node, Node* next) {
    node.plane.w = std::bit_cast<double>(static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(next)));
}

Node* nextOf(const Node& node) {
    return reinterpret_cast<Node*>(static_cast<std::uintptr_t>(std::bit_cast<std::uint64_t>(node.plane.w)));
}

} // namespace

Node::~CSGNode() {
    // Detach every node below this one into one chain, breadth-first: the walk runs along the chain while it grows.
    Node* last = this;
    setNext(*this, nullptr);
    for (Node* node = this; node != nullptr; node = nextOf(*node)) {
        for (NodePtr* child : {&node->front, &node->back}) {
            if (*child == nullptr) continue;
            Node* detached = child->release();
            setNext(*detached, nullptr);
            setNext(*last, detached);
            last = detached;
        }
    }

    // None of them has children any more: deleting one frees its polygons and nothing else.
    for (Node* node = nextOf(*this); node != nullptr;) {
        const NodePtr owner(node);
        node = nextOf(*node);
    }
}

NodePtr Node::clone() const {
    auto copy = std::make_unique<Node>();
    copyInto(*this, *copy);
    return copy;
}

void copyInto(const Node& source, Node& target) {
    Queue<std::pair<const Node*, Node*>> pairs;
    pairs.push({&source, &target});
    while (!pairs.empty()) {
        const auto [from, to] = pairs.take();
        to->polygons = from->polygons;
        to->plane = from->plane;
        if (from->front) {
            to->front = std::make_unique<Node>();
            pairs.push({from->front.get(), to->front.get()});
        }
        if (from->back) {
            to->back = std::make_unique<Node>();
            pairs.push({from->back.get(), to->back.get()});
        }
    }
}

void Node::countElements(std::uint32_t* nodeCount, std::uint32_t* polygonCount, std::uint32_t* vertexCount) const {
    std::uint32_t nodes = 0;
    std::uint32_t polygonTotal = 0;
    std::uint32_t vertexTotal = 0;
    Queue<const Node*> queue;
    queue.push(this);
    while (!queue.empty()) {
        const Node* node = queue.take();
        nodes += 1;
        polygonTotal += static_cast<std::uint32_t>(node->polygons.size());
        if (vertexCount != nullptr) {
            for (const Polygon& polygon : node->polygons)
                vertexTotal += static_cast<std::uint32_t>(polygon.vertices.size());
        }
        if (node->front) queue.push(node->front.get());
        if (node->back) queue.push(node->back.get());
    }
    if (nodeCount != nullptr) *nodeCount = nodes;
    if (polygonCount != nullptr) *polygonCount = polygonTotal;
    if (vertexCount != nullptr) *vertexCount = vertexTotal;
}

List<Node*> Node::collectNodes(std::int32_t expectedCount) {
    List<Node*> nodes;
    std::size_t capacity = 0;
    if (expectedCount < 1) {
        std::uint32_t counted = 0;
        countElements(&counted, nullptr, nullptr);
        capacity = counted;
    } else {
        capacity = static_cast<std::size_t>(expectedCount);
    }
    nodes.reserve(capacity);

    // The list is its own queue: what stands behind i has been listed but not yet walked.
    nodes.push_back(this);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        Node* node = nodes[i];
        if (node->front) nodes.push_back(node->front.get());
        if (node->back) nodes.push_back(node->back.get());
    }
    return nodes;
}

} // namespace orva::bspcsg
