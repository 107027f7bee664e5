#include "platform/audio/lv2/LV2SequenceReader.h"

#include <algorithm>

#include "platform/audio/lv2/LV2URIDs.h"

namespace orvalo {

LV2SequenceReader::LV2SequenceReader(const LV2_Atom_Sequence* sequence, std::size_t capacity,
                                     std::uint32_t frameCount) noexcept
    : bytes_(reinterpret_cast<const std::byte*>(sequence)), frameCount_(frameCount) {
    const auto& urids = LV2URIDs::shared();
    // A plug-in that has nothing to say leaves the chunk as it was.
    if (sequence->atom.type != urids.atomSequence || sequence->body.unit == urids.atomBeatTime) {
        return;
    }
    at_ = sizeof(LV2_Atom_Sequence);
    end_ = std::min(sizeof(LV2_Atom) + std::size_t{sequence->atom.size}, capacity);
    look();
}

void LV2SequenceReader::next() noexcept {
    constexpr std::size_t kAlignment = 8;
    const std::size_t size = sizeof(LV2_Atom_Event) + event_->body.size;
    at_ += (size + kAlignment - 1) / kAlignment * kAlignment;
    look();
}

void LV2SequenceReader::look() noexcept {
    event_ = nullptr;
    if (at_ > end_ || end_ - at_ < sizeof(LV2_Atom_Event)) {
        return;
    }
    const auto* event = reinterpret_cast<const LV2_Atom_Event*>(bytes_ + at_);
    if (event->body.size > end_ - at_ - sizeof(LV2_Atom_Event)) {
        return;
    }
    const auto last = std::int64_t{frameCount_} - 1;
    const auto frame = std::clamp<std::int64_t>(event->time.frames, frame_, last);
    frame_ = static_cast<std::uint32_t>(frame);
    event_ = event;
}

}  // namespace orvalo
