#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace orvalo {

/// A MIDI message of an effect.
struct SharedEvent {
    std::uint32_t frame = 0;  ///< Relative to the start of the quantum.
    std::uint8_t cable = 0;
    std::span<const std::byte> bytes;
};

/// Writes a quantum's events into shared memory, each as frame, cable, length, bytes. The service's
/// audio thread.
class SharedEventWriter {
  public:
    explicit SharedEventWriter(std::span<std::byte> area) : area_(area) {}

    /// False, and nothing changes, when the event is empty or does not fit.
    bool write(const SharedEvent& event) noexcept {
        const auto length = static_cast<std::uint32_t>(event.bytes.size());
        if (event.bytes.empty() || event.bytes.size() > area_.size() ||
            area_.size() - used_ < kHeaderSize + event.bytes.size()) {
            return false;
        }
        put(&event.frame, sizeof(event.frame));
        put(&event.cable, sizeof(event.cable));
        put(&length, sizeof(length));
        put(event.bytes.data(), event.bytes.size());
        return true;
    }

    /// Bytes written so far.
    std::uint32_t used() const noexcept { return static_cast<std::uint32_t>(used_); }

    static constexpr std::size_t kHeaderSize =
        sizeof(std::uint32_t) + sizeof(std::uint8_t) + sizeof(std::uint32_t);

  private:
    void put(const void* data, std::size_t size) noexcept {
        std::memcpy(area_.data() + used_, data, size);
        used_ += size;
    }

    std::span<std::byte> area_;
    std::size_t used_ = 0;
};

/// Reads untrusted events from shared memory. Copies every field before it checks it, because the
/// service can still change it. Stops at the first event that is empty, ends beyond the used part,
/// lies outside the quantum, or precedes the event before it. The host's render thread.
class SharedEventReader {
  public:
    /// copy: a buffer for one message at a time; a longer message ends the reading. Up to three
    /// bytes behind the message are set to 0, as far as the buffer has them.
    SharedEventReader(std::span<const std::byte> area, std::uint32_t used, std::uint32_t frameCount,
                      std::span<std::byte> copy) noexcept
        : area_(area.first(used <= area.size() ? used : 0)), frameCount_(frameCount), copy_(copy) {}

    /// Reads the next event, which lives until the next call; false at the end.
    bool read(SharedEvent& event) noexcept {
        std::uint32_t length = 0;
        if (area_.size() < SharedEventWriter::kHeaderSize) {
            return false;
        }
        const auto* from = area_.data();
        std::memcpy(&event.frame, from, sizeof(event.frame));
        std::memcpy(&event.cable, from + sizeof(event.frame), sizeof(event.cable));
        std::memcpy(&length, from + sizeof(event.frame) + sizeof(event.cable), sizeof(length));
        area_ = area_.subspan(SharedEventWriter::kHeaderSize);
        if (length == 0 || length > area_.size() || length > copy_.size() ||
            event.frame >= frameCount_ || event.frame < earliest_) {
            area_ = {};
            return false;
        }
        earliest_ = event.frame;
        std::memcpy(copy_.data(), area_.data(), length);
        const auto behind = copy_.subspan(length);
        std::memset(behind.data(), 0,
                    behind.size() < kReadableBehind ? behind.size() : kReadableBehind);
        event.bytes = copy_.first(length);
        area_ = area_.subspan(length);
        return true;
    }

  private:
    static constexpr std::size_t kReadableBehind = 3;

    std::span<const std::byte> area_;
    const std::uint32_t frameCount_;
    std::uint32_t earliest_ = 0;
    std::span<std::byte> copy_;
};

}  // namespace orvalo
