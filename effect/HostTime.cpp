#include "effect/HostTime.h"

#include <lv2/atom/util.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvalo::effect {

namespace {

template <typename Number>
double numberFrom(const std::uint8_t* bytes) {
    Number number{};
    std::memcpy(&number, bytes, sizeof number);
    return static_cast<double>(number);
}

/// The value of a number atom; absent for other atoms.
std::optional<double> numberOf(const LV2_Atom& atom, const std::uint8_t* bytes, const Uris& uris) {
    if (atom.size == sizeof(std::int32_t)) {
        if (atom.type == uris.atomFloat) {
            return numberFrom<float>(bytes);
        }
        if (atom.type == uris.atomInt) {
            return numberFrom<std::int32_t>(bytes);
        }
    } else if (atom.size == sizeof(std::int64_t)) {
        if (atom.type == uris.atomDouble) {
            return numberFrom<double>(bytes);
        }
        if (atom.type == uris.atomLong) {
            return numberFrom<std::int64_t>(bytes);
        }
    }
    return std::nullopt;
}

}  // namespace

// The functions of lv2/atom/util.h trust the sizes in an object, so this reads it itself.
bool HostTime::read(const std::uint8_t* bytes, std::uint32_t size) {
    LV2_Atom_Object_Body object;
    if (size < sizeof object) {
        return false;
    }
    std::memcpy(&object, bytes, sizeof object);
    if (object.otype != uris_.timePosition) {
        return false;
    }
    beat_.reset();
    bar_.reset();
    barBeat_.reset();
    std::uint32_t at = sizeof object;
    LV2_Atom_Property_Body property;
    // The key, the context and the value's header come before the value.
    constexpr std::uint32_t headSize = sizeof property;
    while (size - at >= headSize) {
        std::memcpy(&property, bytes + at, headSize);
        const std::uint32_t room = size - at - headSize;
        if (property.value.size > room) {
            break;
        }
        const auto value = numberOf(property.value, bytes + at + headSize, uris_);
        // Nothing musical is larger; it also excludes NaN and infinity.
        constexpr double largest = 1e9;
        if (value && std::abs(*value) <= largest) {
            readProperty(property.key, *value);
        }
        at += headSize + std::min(room, lv2_atom_pad_size(property.value.size));
    }
    hasPosition_ = hasPosition_ || quarters().has_value();
    return hasPosition_ && beatsPerMinute_ > 0.0;
}

void HostTime::readProperty(LV2_URID key, double value) {
    if (key == uris_.timeBeat) {
        beat_ = value;
    } else if (key == uris_.timeBar) {
        bar_ = value;
    } else if (key == uris_.timeBarBeat) {
        barBeat_ = value;
    } else if (key == uris_.timeSpeed) {
        speed_ = value;
    } else if (key == uris_.timeBeatsPerBar && value > 0.0) {
        beatsPerBar_ = value;
    } else if (key == uris_.timeBeatUnit && value >= 1.0) {
        beatUnit_ = value;
    } else if (key == uris_.timeBeatsPerMinute && value > 0.0) {
        constexpr double fastest = 1000.0;
        beatsPerMinute_ = std::min(value, fastest);
    }
}

std::optional<double> HostTime::quarters() const {
    if (!beat_ && !(bar_ && barBeat_)) {
        return std::nullopt;
    }
    const double beat = beat_ ? *beat_ : *bar_ * beatsPerBar_ + *barBeat_;
    // Beyond this, a frame is below the precision of a double.
    constexpr double farthest = 1e9;
    return std::clamp(beat * 4.0 / beatUnit_, -farthest, farthest);
}

double HostTime::quartersPerSecond() const {
    constexpr double fastest = 100.0;
    return std::min(fastest, beatsPerMinute_ / 60.0 * 4.0 / beatUnit_ * std::max(0.0, speed_));
}

void HostTime::forget() {
    *this = HostTime(uris_);
}

}  // namespace orvalo::effect
