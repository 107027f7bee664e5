#include "effect/dsp/HeldNotes.h"

#include <algorithm>

namespace orvalo::effect {

void HeldNotes::press(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity) {
    auto& held = velocities_.at(channel).at(note);
    const bool mayFall = held == loudest_ && velocity < held;
    held = velocity;
    if (mayFall) {
        findLoudest();
    } else {
        loudest_ = std::max(loudest_, velocity);
    }
}

void HeldNotes::release(std::uint8_t channel, std::uint8_t note) {
    auto& held = velocities_.at(channel).at(note);
    const bool mayFall = held != 0 && held == loudest_;
    held = 0;
    if (mayFall) {
        findLoudest();
    }
}

void HeldNotes::releaseChannel(std::uint8_t channel) {
    velocities_.at(channel).fill(0);
    findLoudest();
}

void HeldNotes::releaseAllBut(std::uint8_t channel) {
    for (std::size_t other = 0; other < velocities_.size(); ++other) {
        if (other != channel) {
            velocities_.at(other).fill(0);
        }
    }
    findLoudest();
}

void HeldNotes::releaseAll() {
    for (auto& channel : velocities_) {
        channel.fill(0);
    }
    loudest_ = 0;
}

void HeldNotes::findLoudest() {
    loudest_ = 0;
    for (const auto& channel : velocities_) {
        loudest_ = std::max(loudest_, *std::max_element(channel.begin(), channel.end()));
    }
}

}  // namespace orvalo::effect
