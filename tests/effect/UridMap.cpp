#include "tests/effect/UridMap.h"

namespace orvalo::testing {

UridMap::UridMap()
    : map_{this, [](LV2_URID_Map_Handle handle, const char* uri) {
               return (*static_cast<UridMap*>(handle))[uri];
           }} {}

LV2_URID UridMap::operator[](const std::string& uri) {
    return numbers_.try_emplace(uri, static_cast<LV2_URID>(numbers_.size() + 1)).first->second;
}

const char* UridMap::uri(LV2_URID number) const {
    for (const auto& [uri, one] : numbers_) {
        if (one == number) {
            return uri.c_str();
        }
    }
    return nullptr;
}

}  // namespace orvalo::testing
