#include "boolean/result_queue.hpp"

#include <utility>

namespace orva::bspcsg {

ResultQueue::ResultQueue() : head_(onProcessHeap([] { return new Link; })), tail_(head_.load()) {}

ResultQueue::~ResultQueue() {
    while (pop() != nullptr) {
    }
    delete head_.load();
}

void ResultQueue::push(NodePtr tree) {
    Link* link = onProcessHeap([] { return new Link; });
    link->tree = std::move(tree);
    Link* previous = tail_.exchange(link);
    // note: between these two lines the new link hangs in the air and the queue looks shorter than it is. The consumer
    // asks again later; publishing with release lets it see the whole tree when it sees the link.
    previous->next.store(link, std::memory_order_release);
}

NodePtr ResultQueue::pop() {
    Link* next = head_.load()->next.load(std::memory_order_acquire);
    if (next == nullptr) return nullptr;
    NodePtr tree = std::move(next->tree);
    delete head_.exchange(next);
    return tree;
}

} // namespace orva::bspcsg
