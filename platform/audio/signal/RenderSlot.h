#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace orvalo {

/// One object that control threads replace and one render thread uses without waiting. exchange()
/// returns the old object when no render call can see it any more, so the caller may free it and
/// change what it referred to.
template <typename Value>
class RenderSlot {
  public:
    RenderSlot() = default;
    explicit RenderSlot(std::unique_ptr<Value> value) : value_(value.release()) {}
    RenderSlot(const RenderSlot&) = delete;
    RenderSlot& operator=(const RenderSlot&) = delete;
    RenderSlot(RenderSlot&&) = delete;
    RenderSlot& operator=(RenderSlot&&) = delete;
    /// No access may be open.
    ~RenderSlot() { delete value_.load(std::memory_order_relaxed); }

    /// Control threads, one at a time, never during an access of their own. Waits at most for the
    /// render call under way.
    std::unique_ptr<Value> exchange(std::unique_ptr<Value> next) {
        std::unique_ptr<Value> previous(value_.exchange(next.release(), std::memory_order_seq_cst));
        const auto turn = turn_.load(std::memory_order_seq_cst);
        if (isInside(turn)) {
            while (turn_.load(std::memory_order_acquire) == turn) {
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        }
        return previous;
    }

    /// The present object, for control threads between their exchanges.
    Value* current() const { return value_.load(std::memory_order_relaxed); }

    /// Gives the render thread the object, maybe null, while the access lives. Does not nest.
    class Access {
      public:
        explicit Access(RenderSlot& slot) noexcept : slot_(slot) {
            slot_.turn_.fetch_add(1, std::memory_order_seq_cst);
            value_ = slot_.value_.load(std::memory_order_seq_cst);
        }
        ~Access() { slot_.turn_.fetch_add(1, std::memory_order_seq_cst); }
        Access(const Access&) = delete;
        Access& operator=(const Access&) = delete;

        explicit operator bool() const noexcept { return value_ != nullptr; }
        Value* operator->() const noexcept { return value_; }
        Value& operator*() const noexcept { return *value_; }

      private:
        RenderSlot& slot_;
        Value* value_;
    };

  private:
    static bool isInside(unsigned turn) { return (turn & 1U) != 0; }

    std::atomic<Value*> value_{nullptr};
    std::atomic<unsigned> turn_{0};
};

}  // namespace orvalo
