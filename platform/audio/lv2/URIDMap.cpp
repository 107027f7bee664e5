#include "platform/audio/lv2/URIDMap.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/log/log.h>
#include <lv2/midi/midi.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>

namespace orvalo {

URIDMap& URIDMap::shared() {
    // Never destroyed: plug-ins' threads may use it until the process ends.
    static auto* map = new URIDMap;
    return *map;
}

LV2_URID URIDMap::map(const char* uri) {
    const std::string_view text(uri);
    auto& bucket = buckets_[std::hash<std::string_view>()(text) % kBuckets];
    if (const auto* entry = find(bucket.load(std::memory_order_acquire), text)) {
        return entry->number;
    }
    const std::scoped_lock lock(insertion_);
    auto* first = bucket.load(std::memory_order_acquire);
    if (const auto* entry = find(first, text)) {
        return entry->number;
    }
    if (count_ == kCapacity) {
        return 0;
    }
    ++count_;
    auto* entry = new Entry{std::string(text), count_, first};
    entries_[count_ - 1].store(entry, std::memory_order_release);
    bucket.store(entry, std::memory_order_release);
    return count_;
}

const char* URIDMap::unmap(LV2_URID number) const noexcept {
    if (number == 0 || number > kCapacity) {
        return nullptr;
    }
    const auto* entry = entries_[number - 1].load(std::memory_order_acquire);
    return entry == nullptr ? nullptr : entry->uri.c_str();
}

std::vector<std::string> URIDMap::uris() const {
    std::vector<std::string> result;
    while (const auto* uri = unmap(static_cast<LV2_URID>(result.size() + 1))) {
        result.emplace_back(uri);
    }
    return result;
}

bool URIDMap::adopt(const std::vector<std::string>& uris) {
    LV2_URID number = 0;
    for (const auto& uri : uris) {
        if (map(uri.c_str()) != ++number) {
            return false;
        }
    }
    return true;
}

const URIDMap::Entry* URIDMap::find(const Entry* from, std::string_view uri) noexcept {
    while (from != nullptr && from->uri != uri) {
        from = from->next;
    }
    return from;
}

const LV2URIDs& LV2URIDs::shared() {
    static const LV2URIDs urids = [] {
        auto& map = URIDMap::shared();
        LV2URIDs result{};
        result.atomBlank = map.map(LV2_ATOM__Blank);
        result.atomBool = map.map(LV2_ATOM__Bool);
        result.atomChunk = map.map(LV2_ATOM__Chunk);
        result.atomDouble = map.map(LV2_ATOM__Double);
        result.atomFloat = map.map(LV2_ATOM__Float);
        result.atomInt = map.map(LV2_ATOM__Int);
        result.atomLong = map.map(LV2_ATOM__Long);
        result.atomObject = map.map(LV2_ATOM__Object);
        result.atomSequence = map.map(LV2_ATOM__Sequence);
        result.atomString = map.map(LV2_ATOM__String);
        result.atomBeatTime = map.map(LV2_ATOM__beatTime);
        result.logError = map.map(LV2_LOG__Error);
        result.logTrace = map.map(LV2_LOG__Trace);
        result.logWarning = map.map(LV2_LOG__Warning);
        result.maxBlockLength = map.map(LV2_BUF_SIZE__maxBlockLength);
        result.nominalBlockLength = map.map(LV2_BUF_SIZE__nominalBlockLength);
        result.minBlockLength = map.map(LV2_BUF_SIZE__minBlockLength);
        result.sequenceSize = map.map(LV2_BUF_SIZE__sequenceSize);
        result.sampleRate = map.map(LV2_PARAMETERS__sampleRate);
        result.contextName = map.map(kContextNameURI);
        result.midiEvent = map.map(LV2_MIDI__MidiEvent);
        result.stateChanged = map.map(LV2_STATE__StateChanged);
        result.timePosition = map.map(LV2_TIME__Position);
        result.timeFrame = map.map(LV2_TIME__frame);
        result.timeSpeed = map.map(LV2_TIME__speed);
        return result;
    }();
    return urids;
}

}  // namespace orvalo
