#pragma once

#include <lv2/atom/atom.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalo {

/// The memory of one sequence port. Made off the render thread, used on it.
class LV2SequenceBuffer {
  public:
    /// size: bytes, rounded up to whole words.
    explicit LV2SequenceBuffer(std::uint32_t size);

    LV2_Atom_Sequence* sequence() noexcept {
        return reinterpret_cast<LV2_Atom_Sequence*>(words_.data());
    }
    std::size_t capacity() const noexcept { return words_.size() * sizeof(std::uint64_t); }

    /// Makes it an empty sequence, for an input.
    void clearForInput() noexcept;
    /// Makes it an empty chunk of its whole size, for an output.
    void clearForOutput() noexcept;
    /// Makes it a sequence with one time position at the first frame: the frame since the start, at
    /// speed 1.
    void writeTimePosition(std::int64_t frame) noexcept;
    /// Appends an event to an input. frame: not before that of the last event. False when it does
    /// not fit.
    bool append(std::uint32_t frame, const LV2_Atom& event) noexcept;
    /// Whether a buffer of size bytes holds a time position and an event with a body of bodySize
    /// bytes.
    static bool couldHold(std::uint32_t size, std::uint32_t bodySize) noexcept;

  private:
    std::vector<std::uint64_t> words_;
};

/// Reads the events of a sequence that a plug-in wrote. Never reads outside the buffer, whatever
/// the sizes say; frames are clamped to the quantum and never decrease.
class LV2SequenceReader {
  public:
    LV2SequenceReader() = default;
    /// sequence: aligned to 8 bytes; capacity: the buffer's size in bytes; frameCount: of the
    /// quantum, above 0. Starts at the first event.
    LV2SequenceReader(const LV2_Atom_Sequence* sequence, std::size_t capacity,
                      std::uint32_t frameCount) noexcept;

    /// The current event; null at the end.
    const LV2_Atom_Event* event() const noexcept { return event_; }
    /// Its frame in the quantum.
    std::uint32_t frame() const noexcept { return frame_; }
    /// Moves to the next event. event() must not be null.
    void next() noexcept;

  private:
    void look() noexcept;

    const std::byte* bytes_ = nullptr;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    std::uint32_t frameCount_ = 0;
    const LV2_Atom_Event* event_ = nullptr;
    std::uint32_t frame_ = 0;
};

}  // namespace orvalo
