// Where the merge tasks of the union reducers leave their results: first in first out, many producers, one consumer, no
// lock. A linked list that always holds one link more than it has entries (D. Vyukov: Non-intrusive MPSC node-based
// queue, 2010): producers swap themselves in at the tail, the consumer walks at the head, and they never touch the same
// link.
#pragma once

#include "bsp/node.hpp"

#include <atomic>

namespace orva::bspcsg {

class ResultQueue {
public:
    ResultQueue();
    ~ResultQueue(); ///< frees the trees still in it
    ResultQueue(const ResultQueue&) = delete;
    ResultQueue& operator=(const ResultQueue&) = delete;

    /// From any thread.
    void push(NodePtr tree);

    /// From one thread only; null when the queue is empty, or when what was pushed is not yet published.
    NodePtr pop();

private:
    struct Link {
        NodePtr tree;
        std::atomic<Link*> next{nullptr};
    };

    std::atomic<Link*> head_; ///< the stub: its tree has been taken; what follows it is the first entry
    std::atomic<Link*> tail_;
};

} // namespace orva::bspcsg
