#pragma once

#include <array>
#include <atomic>
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

/// A fixed number of preallocated nodes. Lock-free; any thread.
class MainQueuePool {
  public:
    /// The items that may wait, plus the node that the list starts from.
    static constexpr std::uint32_t capacity = 16'384 + 1;

    MainQueuePool();

    /// A free node; null when there is none.
    MainQueueNode* take() noexcept;
    void giveBack(MainQueueNode& node) noexcept;

  private:
    std::unique_ptr<std::array<MainQueueNode, capacity>> nodes_;
    /// The first free node's place + 1 in the lower half, a count of changes in the upper half: a
    /// compare-exchange fails even when the same node was taken and given back in between.
    std::atomic<std::uint64_t> head_;
};

/// The items in the order of their submission. Many threads push, one pops: Vyukov's linked queue.
/// A push is one exchange and one store; the node of the item popped last stays as the start of the
/// list.
class MainQueueStore {
  public:
    /// first: the empty node that the list starts from.
    explicit MainQueueStore(MainQueueNode& first) : newest_(&first), oldest_(&first) {}

    void push(MainQueueNode& node) noexcept;

    /// Moves the oldest item into work and returns the node that left the list. Null when there is
    /// no item, or when push() of the oldest item has not returned yet. One thread.
    MainQueueNode* pop(WorkItem& work) noexcept;

    /// Whether pop() would return an item. On the popping thread.
    bool canPop() const noexcept;

  private:
    alignas(64) std::atomic<MainQueueNode*> newest_;
    alignas(64) MainQueueNode* oldest_;
};

}  // namespace orvalo
