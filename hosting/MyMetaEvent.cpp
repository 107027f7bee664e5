#include "hosting/MyMetaEvent.h"

#include <algorithm>
#include <new>

#include "hosting/MIDIConstants.h"
#include "platform/foundation/Checked.h"

namespace orvalo {

namespace {

MIDIMetaEvent* record(std::byte* block) {
    return std::launder(reinterpret_cast<MIDIMetaEvent*>(block));
}

}  // namespace

MyMetaEvent::MyMetaEvent(std::uint8_t type, const std::vector<std::uint8_t>& data)
    : size(checkedAdd(exactly<std::int64_t>(data.size()),
                      static_cast<std::int64_t>(sizeof(MIDIMetaEvent)))),
      mem(std::make_unique<std::byte[]>(exactly<std::size_t>(size))) {
    auto* event = record(mem.get());
    event->metaEventType = type;
    event->dataLength = exactly<std::uint32_t>(data.size());
    std::ranges::transform(data, mem.get() + offsetof(MIDIMetaEvent, data),
                           [](std::uint8_t byte) { return std::byte{byte}; });
}

void MyMetaEvent::withMIDIMetaEventPtr(
    const std::function<void(const MIDIMetaEvent*)>& body) const {
    body(record(mem.get()));
}

void test_MyMetaEvent() {
    const MyMetaEvent event(META_SPECIFIC, {0, 0, 0});
    event.withMIDIMetaEventPtr([](const MIDIMetaEvent*) {});
}

}  // namespace orvalo
