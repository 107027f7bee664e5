#pragma once

#include <lv2/atom/atom.h>

#include <cstddef>
#include <cstdint>

namespace orvalo {

/// Reads the events of a sequence that a plug-in wrote, and trusts none of it: nothing outside the
/// buffer is read, whatever the sizes say, and frames never go backwards nor leave the block.
class LV2SequenceReader {
  public:
    LV2SequenceReader() = default;
    /// sequence: the buffer's begin, aligned to 8 bytes; capacity: its whole size in bytes;
    /// frameCount: the block's length, above 0. Ready at the first event.
    LV2SequenceReader(const LV2_Atom_Sequence* sequence, std::size_t capacity,
                      std::uint32_t frameCount) noexcept;

    /// The current event, whole inside the buffer; null at the end.
    const LV2_Atom_Event* event() const noexcept { return event_; }
    /// Its frame in the block.
    std::uint32_t frame() const noexcept { return frame_; }
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
