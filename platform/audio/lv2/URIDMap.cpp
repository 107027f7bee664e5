#include "platform/audio/lv2/URIDMap.h"

namespace orvalo {

URIDMap& URIDMap::shared() {
    // Never destroyed: plug-ins' threads may look numbers up until the process ends.
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

}  // namespace orvalo
