#include "platform/audio/lv2/LV2SequenceBuffer.h"

#include <cstring>

#include "platform/audio/lv2/LV2URIDs.h"

namespace orvalo {

namespace {

/// A time position as a sequence's one event, with the padding that atoms have.
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

/// The bytes that an event takes in a sequence, with its padding.
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

}  // namespace orvalo
