#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace orvalo {

/// A queue of byte messages from one writing thread to one reading thread. Lock-free; never
/// allocates after construction.
class ByteRing {
  public:
    /// capacity: bytes for messages, with four more for the length of each.
    explicit ByteRing(std::size_t capacity) : bytes_(capacity) {}

    /// Adds a message; false when it does not fit as a whole. Writing thread.
    bool write(std::uint32_t size, const void* data) noexcept {
        const auto end = written_.load(std::memory_order_relaxed);
        const auto used = end - read_.load(std::memory_order_acquire);
        if (bytes_.size() - used < std::size_t{size} + sizeof(size)) {
            return false;
        }
        put(end, &size, sizeof(size));
        put(end + sizeof(size), data, size);
        written_.store(end + sizeof(size) + size, std::memory_order_release);
        return true;
    }

    /// Moves the next message into buffer, which holds capacity() bytes; false without one. Reading
    /// thread.
    bool read(std::uint32_t& size, void* buffer) noexcept {
        const auto from = read_.load(std::memory_order_relaxed);
        if (written_.load(std::memory_order_acquire) == from) {
            return false;
        }
        get(from, &size, sizeof(size));
        get(from + sizeof(size), buffer, size);
        read_.store(from + sizeof(size) + size, std::memory_order_release);
        return true;
    }

    std::size_t capacity() const noexcept { return bytes_.size(); }

  private:
    void put(std::size_t at, const void* data, std::size_t size) noexcept {
        if (size == 0) {
            return;
        }
        const auto start = at % bytes_.size();
        const auto first = std::min(size, bytes_.size() - start);
        std::memcpy(bytes_.data() + start, data, first);
        std::memcpy(bytes_.data(), static_cast<const std::byte*>(data) + first, size - first);
    }

    void get(std::size_t at, void* data, std::size_t size) const noexcept {
        const auto start = at % bytes_.size();
        const auto first = std::min(size, bytes_.size() - start);
        std::memcpy(data, bytes_.data() + start, first);
        std::memcpy(static_cast<std::byte*>(data) + first, bytes_.data(), size - first);
    }

    std::vector<std::byte> bytes_;
    // Bytes since the start; 64 bits do not overflow.
    std::atomic<std::size_t> written_{0};
    std::atomic<std::size_t> read_{0};
};

}  // namespace orvalo
