#include <cmath>

#include "persistence/PersistentAppData.h"

// Rectangles as values of the settings.

namespace orvalo {

namespace {

/// The number as a 32-bit float, when it is exactly one; any NaN is.
std::optional<float> exactFloat(double number) {
    const auto result = static_cast<float>(number);
    return std::isnan(number) || result == number ? std::optional(result) : std::nullopt;
}

std::optional<float> exactFloat(std::int64_t number) {
    const auto result = static_cast<float>(number);
    // The greatest numbers round to 2^63, which is none of them.
    const bool isInRange = result < 0x1p63F;
    return isInRange && static_cast<std::int64_t>(result) == number ? std::optional(result)
                                                                    : std::nullopt;
}

std::optional<float> exactFloat(const PropertyList& value) {
    if (const auto* number = value.as<double>()) {
        return exactFloat(*number);
    }
    const auto* number = value.as<std::int64_t>();
    return number == nullptr ? std::nullopt : exactFloat(*number);
}

}  // namespace

PropertyList::Dictionary PersistentAppData::frameToDictionary(const CGRect& frame) {
    return {{"left", static_cast<float>(frame.minX())},
            {"top", static_cast<float>(frame.minY())},
            {"width", static_cast<float>(frame.width())},
            {"height", static_cast<float>(frame.height())}};
}

std::optional<CGRect> PersistentAppData::dictionaryToFrame(const std::string& key) {
    const auto value = sharedInstance()->getObject(key);
    const auto* dictionary = value ? value->as<PropertyList::Dictionary>() : nullptr;
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    CGRect frame(0, 0, 100, 100);
    for (const auto& [name, entry] : *dictionary) {
        const auto number = exactFloat(entry);
        if (!number) {
            return std::nullopt;
        }
        if (name == "left") {
            frame.origin.x = *number;
        } else if (name == "top") {
            frame.origin.y = *number;
        } else if (name == "width") {
            frame.size.width = *number;
        } else if (name == "height") {
            frame.size.height = *number;
        }
    }
    return frame;
}

}  // namespace orvalo
