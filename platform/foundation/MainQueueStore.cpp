#include "platform/foundation/MainQueueStore.h"

#include <utility>

namespace orvalo {

namespace {

constexpr std::uint64_t placeMask = 0xffff'ffff;
constexpr std::uint64_t oneChange = placeMask + 1;

}  // namespace

MainQueuePool::MainQueuePool()
    : nodes_(std::make_unique<std::array<MainQueueNode, capacity>>()), head_(1) {
    for (std::uint32_t place = 1; place <= capacity; ++place) {
        auto& node = (*nodes_)[place - 1];
        node.place = place;
        node.nextFree.store(place < capacity ? place + 1 : 0, std::memory_order_relaxed);
    }
}

MainQueueNode* MainQueuePool::take() noexcept {
    std::uint64_t head = head_.load(std::memory_order_acquire);
    while ((head & placeMask) != 0) {
        auto& node = (*nodes_)[(head & placeMask) - 1];
        const std::uint64_t next = node.nextFree.load(std::memory_order_relaxed);
        const std::uint64_t changed = (head & ~placeMask) + oneChange + next;
        if (head_.compare_exchange_weak(head, changed, std::memory_order_acq_rel,
                                        std::memory_order_acquire)) {
            return &node;
        }
    }
    return nullptr;
}

void MainQueuePool::giveBack(MainQueueNode& node) noexcept {
    std::uint64_t head = head_.load(std::memory_order_relaxed);
    std::uint64_t changed = 0;
    do {
        node.nextFree.store(static_cast<std::uint32_t>(head & placeMask),
                            std::memory_order_relaxed);
        changed = (head & ~placeMask) + oneChange + node.place;
    } while (!head_.compare_exchange_weak(head, changed, std::memory_order_acq_rel,
                                          std::memory_order_relaxed));
}

void MainQueueStore::push(MainQueueNode& node) noexcept {
    node.next.store(nullptr, std::memory_order_relaxed);
    auto* before = newest_.exchange(&node, std::memory_order_acq_rel);
    before->next.store(&node, std::memory_order_release);
}

MainQueueNode* MainQueueStore::pop(WorkItem& work) noexcept {
    auto* next = oldest_->next.load(std::memory_order_acquire);
    if (next == nullptr) {
        return nullptr;
    }
    work = std::move(next->work);
    return std::exchange(oldest_, next);
}

bool MainQueueStore::canPop() const noexcept {
    return oldest_->next.load(std::memory_order_acquire) != nullptr;
}

}  // namespace orvalo
