#include "hosting/MyMetaEvent.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include "hosting/MIDIConstants.h"
#include "platform/foundation/Checked.h"

namespace orvalo {

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<std::byte> makeBlock(std::int64_t size, std::uint8_t type, const Bytes& data) {
    std::vector<std::byte> block(exactly<std::size_t>(size));
    auto* event = std::launder(reinterpret_cast<MIDIMetaEvent*>(block.data()));
    event->metaEventType = type;
    event->dataLength = metaDataLength(data.size());
    std::ranges::transform(data, block.begin() + offsetof(MIDIMetaEvent, data),
                           [](std::uint8_t byte) { return std::byte{byte}; });
    return block;
}

}  // namespace

std::uint32_t metaDataLength(std::size_t bytes) {
    return exactly<std::uint32_t>(bytes);
}

MyMetaEvent::MyMetaEvent(std::uint8_t type, const std::vector<std::uint8_t>& data)
    : size(checkedAdd(exactly<std::int64_t>(data.size()),
                      static_cast<std::int64_t>(sizeof(MIDIMetaEvent)))),
      mem(makeBlock(size, type, data)) {}

void MyMetaEvent::withMIDIMetaEventPtr(
    const std::function<void(const MIDIMetaEvent*)>& body) const {
    body(std::launder(reinterpret_cast<const MIDIMetaEvent*>(mem.data())));
}

void test_MyMetaEvent() {
    const MyMetaEvent event(META_SPECIFIC, {0, 0, 0});
    event.withMIDIMetaEventPtr([](const MIDIMetaEvent*) {});
}

}  // namespace orvalo
