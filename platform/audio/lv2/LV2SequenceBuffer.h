#pragma once

#include <lv2/atom/atom.h>

#include <cstdint>
#include <vector>

namespace orvalo {

/// The memory behind one sequence port. Made off the render thread, used on it.
class LV2SequenceBuffer {
  public:
    /// size: bytes, rounded up to whole words.
    explicit LV2SequenceBuffer(std::uint32_t size);

    LV2_Atom_Sequence* sequence() noexcept {
        return reinterpret_cast<LV2_Atom_Sequence*>(words_.data());
    }
    std::size_t capacity() const noexcept { return words_.size() * sizeof(std::uint64_t); }

    /// Makes it a sequence without events, for an input.
    void clearForInput() noexcept;
    /// Makes it an empty space of its whole size, for an output.
    void clearForOutput() noexcept;
    /// A sequence with one time position at the block's start: the frame since the beginning, and
    /// time going forward at its own speed.
    void writeTimePosition(std::int64_t frame) noexcept;
    /// Adds an event behind those of an input, whose frames must not be later. False, and nothing
    /// is added, when there is no room for it.
    bool append(std::uint32_t frame, const LV2_Atom& event) noexcept;
    /// Whether the empty input of a buffer of size bytes has room for an event with a body of
    /// bodySize bytes, beside a time position.
    static bool couldHold(std::uint32_t size, std::uint32_t bodySize) noexcept;

  private:
    std::vector<std::uint64_t> words_;
};

}  // namespace orvalo
