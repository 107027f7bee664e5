#include "platform/audio/lv2/LV2StateValue.h"

#include <cmath>
#include <cstring>

#include "platform/audio/lv2/LV2URIDs.h"

namespace orvalo {

namespace {

template <typename Number>
std::optional<float> as(const void* value, std::uint32_t size) {
    if (size != sizeof(Number)) {
        return std::nullopt;
    }
    Number number{};
    std::memcpy(&number, value, sizeof(number));
    const auto result = static_cast<float>(number);
    return std::isfinite(result) ? std::optional(result) : std::nullopt;
}

}  // namespace

std::optional<float> numberOf(const void* value, std::uint32_t size, std::uint32_t type) {
    const auto& urids = LV2URIDs::shared();
    if (type == urids.atomFloat) {
        return as<float>(value, size);
    }
    if (type == urids.atomDouble) {
        return as<double>(value, size);
    }
    if (type == urids.atomInt || type == urids.atomBool) {
        return as<std::int32_t>(value, size);
    }
    if (type == urids.atomLong) {
        return as<std::int64_t>(value, size);
    }
    return std::nullopt;
}

}  // namespace orvalo
