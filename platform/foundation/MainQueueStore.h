#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/foundation/WorkItem.h"

namespace orvalo {

/// One waiting item of the main queue.
struct MainQueueNode {
    std::atomic<MainQueueNode*> next{nullptr};
    std::atomic<std::uint32_t> nextFree{0};  ///< Place in the pool + 1, or 0; while free.
    std::uint32_t place = 0;                 ///< Place in the pool + 1; 0: from the heap.
    WorkItem work;
};

/// A fixed number of nodes, all made beforehand. Lock-free, from any thread.
class MainQueuePool {
  public:
    /// How many items may wait, and one more: the node that the list starts from.
    static constexpr std::uint32_t capacity = 16'384 + 1;

    MainQueuePool();

    /// A node, or null when all are out.
    MainQueueNode* take() noexcept;
    void giveBack(MainQueueNode& node) noexcept;

  private:
    std::unique_ptr<std::array<MainQueueNode, capacity>> nodes_;
    /// The first free node as place + 1, below a count of changes, so that a node that went and
    /// came back between two looks is noticed.
    std::atomic<std::uint64_t> head_;
};

/// The items in the order of their submission. Many threads push, one pops. The form is Vyukov's
/// queue of linked nodes: a push is one exchange and one store; the node of the item popped last
/// stays as the start of the list.
class MainQueueStore {
  public:
    /// first: the empty node that the list starts from.
    explicit MainQueueStore(MainQueueNode& first) : newest_(&first), oldest_(&first) {}

    void push(MainQueueNode& node) noexcept;

    /// Moves the oldest item into work and returns the node that the list needs no more; null when
    /// there is no item, and also while the submission of the oldest one has not ended. One thread.
    MainQueueNode* pop(WorkItem& work) noexcept;

    /// Whether pop() has something to give. The popping thread.
    bool canPop() const noexcept;

  private:
    alignas(64) std::atomic<MainQueueNode*> newest_;
    alignas(64) MainQueueNode* oldest_;
};

}  // namespace orvalo
