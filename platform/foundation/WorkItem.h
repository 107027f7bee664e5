#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace orvalo {

/// A closure without arguments. Closures of up to 64 bytes that move without throwing are stored
/// inline; others are allocated. std::function stores only 16 bytes inline and must copy.
class WorkItem {
  public:
    static constexpr std::size_t inlineCapacity = 64;

    WorkItem() noexcept = default;

    // The constraint excludes work items.
    // NOLINTBEGIN(bugprone-forwarding-reference-overload)
    template <typename Work>
    requires(!std::is_same_v<std::remove_cvref_t<Work>, WorkItem> &&
             std::is_invocable_v<std::decay_t<Work>&>) WorkItem(Work&& work) {
        // NOLINTEND(bugprone-forwarding-reference-overload)
        using Closure = std::decay_t<Work>;
        if constexpr (fitsInline<Closure>()) {
            ::new (static_cast<void*>(storage_.data())) Closure(std::forward<Work>(work));
            operations_ = &inlineOperations<Closure>;
        } else {
            ::new (static_cast<void*>(storage_.data()))
                Closure*(new Closure(std::forward<Work>(work)));
            operations_ = &heapOperations<Closure>;
        }
    }

    WorkItem(WorkItem&& other) noexcept { take(other); }
    WorkItem& operator=(WorkItem&& other) noexcept {
        if (this != &other) {
            reset();
            take(other);
        }
        return *this;
    }
    WorkItem(const WorkItem&) = delete;
    WorkItem& operator=(const WorkItem&) = delete;
    ~WorkItem() { reset(); }

    explicit operator bool() const noexcept { return operations_ != nullptr; }

    /// Runs the closure, which must be present.
    void operator()() { operations_->run(storage_.data()); }

    /// Destroys the closure, if there is one.
    void reset() noexcept {
        if (operations_ != nullptr) {
            std::exchange(operations_, nullptr)->destroy(storage_.data());
        }
    }

    /// Whether a closure of this type needs no allocation.
    template <typename Closure>
    static constexpr bool fitsInline() {
        // NOLINTNEXTLINE(misc-redundant-expression): redundant for some closures only.
        return sizeof(Closure) <= inlineCapacity && alignof(Closure) <= alignof(std::max_align_t) &&
               std::is_nothrow_move_constructible_v<Closure>;
    }

  private:
    struct Operations {
        void (*run)(void* storage);
        void (*move)(void* from, void* to) noexcept;
        void (*destroy)(void* storage) noexcept;
    };

    template <typename Closure>
    static constexpr Operations inlineOperations{
        [](void* storage) { (*static_cast<Closure*>(storage))(); },
        [](void* from, void* to) noexcept {
            auto* closure = static_cast<Closure*>(from);
            ::new (to) Closure(std::move(*closure));
            closure->~Closure();
        },
        [](void* storage) noexcept { static_cast<Closure*>(storage)->~Closure(); }};

    template <typename Closure>
    static constexpr Operations heapOperations{
        [](void* storage) { (**static_cast<Closure**>(storage))(); },
        [](void* from, void* to) noexcept { ::new (to) Closure*(*static_cast<Closure**>(from)); },
        [](void* storage) noexcept {
            std::unique_ptr<Closure> owner(*static_cast<Closure**>(storage));
        }};

    void take(WorkItem& other) noexcept {
        operations_ = std::exchange(other.operations_, nullptr);
        if (operations_ != nullptr) {
            operations_->move(other.storage_.data(), storage_.data());
        }
    }

    const Operations* operations_ = nullptr;
    alignas(std::max_align_t) std::array<std::byte, inlineCapacity> storage_{};
};

}  // namespace orvalo
