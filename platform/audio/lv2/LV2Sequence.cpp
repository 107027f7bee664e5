#include "platform/audio/lv2/LV2Sequence.h"

#include <algorithm>
#include <cstring>

#include "platform/audio/lv2/URIDMap.h"

namespace orvalo {

namespace {

/// A time position as the only event of a sequence, with the padding of atoms.
struct TimePositionEvent {
    LV2_Atom_Event event;
    LV2_Atom_Object_Body object;
    LV2_Atom_Property_Body frameProperty;
    std::int64_t frame;
    LV2_Atom_Property_Body speedProperty;
    float speed;
    std::uint32_t padding;
};
static_assert(sizeof(TimePositionEvent) == 72);

/// Bytes of an event in a sequence, with padding.
std::size_t eventSize(std::uint32_t bodySize) {
    constexpr std::size_t kAlignment = 8;
    const std::size_t size = sizeof(LV2_Atom_Event) + bodySize;
    return (size + kAlignment - 1) / kAlignment * kAlignment;
}

}  // namespace

LV2SequenceBuffer::LV2SequenceBuffer(std::uint32_t size)
    : words_((size + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t)) {}

void LV2SequenceBuffer::clearForInput() noexcept {
    auto* target = sequence();
    target->atom = {sizeof(LV2_Atom_Sequence_Body), LV2URIDs::shared().atomSequence};
    target->body = {0, 0};
}

void LV2SequenceBuffer::clearForOutput() noexcept {
    auto* target = sequence();
    target->atom = {static_cast<std::uint32_t>(capacity() - sizeof(LV2_Atom)),
                    LV2URIDs::shared().atomChunk};
    target->body = {0, 0};
}

void LV2SequenceBuffer::writeTimePosition(std::int64_t frame) noexcept {
    const auto& urids = LV2URIDs::shared();
    TimePositionEvent position{};
    position.event.time.frames = 0;
    position.event.body = {sizeof(position) - sizeof(position.event), urids.atomObject};
    position.object = {0, urids.timePosition};
    position.frameProperty = {urids.timeFrame, 0, {sizeof(position.frame), urids.atomLong}};
    position.frame = frame;
    position.speedProperty = {urids.timeSpeed, 0, {sizeof(position.speed), urids.atomFloat}};
    position.speed = 1.0F;
    clearForInput();
    std::memcpy(reinterpret_cast<std::byte*>(sequence()) + sizeof(LV2_Atom_Sequence), &position,
                sizeof(position));
    sequence()->atom.size += sizeof(position);
}

bool LV2SequenceBuffer::append(std::uint32_t frame, const LV2_Atom& event) noexcept {
    const std::size_t end = sizeof(LV2_Atom) + sequence()->atom.size;
    const std::size_t size = eventSize(event.size);
    if (end > capacity() || capacity() - end < size) {
        return false;
    }
    const std::int64_t time = frame;
    auto* bytes = reinterpret_cast<std::byte*>(sequence()) + end;
    std::memcpy(bytes, &time, sizeof(time));
    std::memcpy(bytes + sizeof(time), &event, sizeof(event) + event.size);
    sequence()->atom.size += static_cast<std::uint32_t>(size);
    return true;
}

bool LV2SequenceBuffer::couldHold(std::uint32_t size, std::uint32_t bodySize) noexcept {
    return sizeof(LV2_Atom_Sequence) + sizeof(TimePositionEvent) + eventSize(bodySize) <= size;
}

LV2SequenceReader::LV2SequenceReader(const LV2_Atom_Sequence* sequence, std::size_t capacity,
                                     std::uint32_t frameCount) noexcept
    : bytes_(reinterpret_cast<const std::byte*>(sequence)), frameCount_(frameCount) {
    const auto& urids = LV2URIDs::shared();
    // A plug-in without events leaves the empty chunk.
    if (sequence->atom.type != urids.atomSequence || sequence->body.unit == urids.atomBeatTime) {
        return;
    }
    at_ = sizeof(LV2_Atom_Sequence);
    end_ = std::min(sizeof(LV2_Atom) + std::size_t{sequence->atom.size}, capacity);
    look();
}

void LV2SequenceReader::next() noexcept {
    at_ += eventSize(event_->body.size);
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
