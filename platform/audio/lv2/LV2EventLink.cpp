#include "platform/audio/lv2/LV2EventLink.h"

#include <algorithm>
#include <cstring>

namespace orvalo {

namespace {

// A quantum may fill a port's buffer, and the UI reads once in several quanta.
constexpr std::size_t kBuffersPerRing = 16;

}  // namespace

LV2EventLink::Lane::Lane(const LV2Port& ofPort)
    : port(ofPort.index),
      isInput(ofPort.isInput),
      longest(ofPort.bufferSize),
      ring(kBuffersPerRing * ofPort.bufferSize),
      words((ofPort.bufferSize + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t)) {}

LV2EventLink::LV2EventLink(const std::vector<LV2Port>& ports) : lanes_(ports.size()) {
    std::size_t longest = 0;
    for (const auto& port : ports) {
        if (port.kind == LV2PortKind::sequence) {
            auto& lane = lanes_[port.index];
            lane = std::make_unique<Lane>(port);
            longest = std::max(longest, lane->words.size());
        }
    }
    sent_.resize(longest);
}

LV2EventLink::Lane* LV2EventLink::lane(std::uint32_t port, bool isInput) const noexcept {
    auto* found = port < lanes_.size() ? lanes_[port].get() : nullptr;
    return found != nullptr && found->isInput == isInput ? found : nullptr;
}

bool LV2EventLink::send(std::uint32_t port, LV2_URID type, std::uint32_t size, const void* body) {
    auto* input = lane(port, true);
    if (input == nullptr || size > input->longest ||
        !LV2SequenceBuffer::couldHold(input->longest, size)) {
        return false;
    }
    const LV2_Atom header{size, type};
    auto* bytes = reinterpret_cast<std::byte*>(sent_.data());
    std::memcpy(bytes, &header, sizeof(header));
    if (size > 0) {
        std::memcpy(bytes + sizeof(header), body, size);
    }
    return input->ring.write(static_cast<std::uint32_t>(sizeof(header)) + size, bytes);
}

bool LV2EventLink::setSubscribed(std::uint32_t port, bool isSubscribed) {
    auto* output = lane(port, false);
    if (output == nullptr) {
        return false;
    }
    output->isSubscribed.store(isSubscribed, std::memory_order_relaxed);
    return true;
}

const LV2_Atom* LV2EventLink::receive(std::uint32_t& port) {
    for (auto& output : lanes_) {
        std::uint32_t size = 0;
        if (output != nullptr && !output->isInput &&
            output->ring.read(size, output->words.data())) {
            port = output->port;
            return output->front();
        }
    }
    return nullptr;
}

void LV2EventLink::deliver(std::uint32_t port, LV2SequenceBuffer& buffer) noexcept {
    auto* input = lane(port, true);
    if (input == nullptr) {
        return;
    }
    std::uint32_t size = 0;
    while (input->hasFront || input->ring.read(size, input->words.data())) {
        input->hasFront = !buffer.append(0, *input->front());
        if (input->hasFront) {
            return;
        }
    }
}

void LV2EventLink::mirror(std::uint32_t port, const LV2_Atom& event) noexcept {
    auto* output = lane(port, false);
    if (output == nullptr || !output->isSubscribed.load(std::memory_order_relaxed)) {
        return;
    }
    // The event was in the port's buffer, so it fits into the reader's buffer of the same size.
    if (!output->ring.write(static_cast<std::uint32_t>(sizeof(event)) + event.size, &event)) {
        lost_.fetch_add(1, std::memory_order_relaxed);
    }
}

}  // namespace orvalo
