#include "effect/dsp/NoteDucker.h"

#include <algorithm>
#include <cmath>

#include "effect/dsp/MidiBytes.h"
#include "effect/dsp/TimeConstant.h"

namespace orvalo::effect {

NoteDucker::NoteDucker(double sampleRate)
    : sampleRate_(sampleRate), attackTake_(takenPerFrame(attackMilliseconds, sampleRate)) {}

void NoteDucker::configure(float depth, float release, std::optional<std::uint8_t> channel) {
    depth_ = depth;
    if (release != releaseTime_) {
        releaseTime_ = release;
        releaseTake_ = takenPerFrame(release, sampleRate_);
    }
    if (channel != channel_) {
        channel_ = channel;
        if (channel) {
            notes_.releaseAllBut(*channel);
        }
    }
}

void NoteDucker::reset() {
    notes_.releaseAll();
    beat_ = false;
    current_ = 0.0;
}

void NoteDucker::receive(const std::uint8_t* bytes, std::uint32_t size) {
    if (size == 1 && bytes[0] == midi::systemReset) {
        notes_.releaseAll();
        return;
    }
    if (size != 3 || ((bytes[1] | bytes[2]) & 0x80) != 0) {
        return;
    }
    const auto status = static_cast<std::uint8_t>(bytes[0] & 0xF0);
    const auto channel = static_cast<std::uint8_t>(bytes[0] & 0x0F);
    if (channel_ && channel != *channel_) {
        return;
    }
    if (status == midi::noteOn && bytes[2] != 0) {
        notes_.press(channel, bytes[1], bytes[2]);
    } else if (status == midi::noteOn || status == midi::noteOff) {
        notes_.release(channel, bytes[1]);
    } else if (status == midi::controlChange) {
        receiveControl(channel, bytes[1]);
    }
}

void NoteDucker::receiveControl(std::uint8_t channel, std::uint8_t controller) {
    if (controller == midi::allSoundOff || controller >= midi::allNotesOff) {
        notes_.releaseChannel(channel);
    }
}

double NoteDucker::aim() const {
    constexpr int fullVelocity = 127;
    const int velocity = beat_ ? fullVelocity : notes_.loudest();
    return static_cast<double>(depth_) * velocity / fullVelocity;
}

void NoteDucker::process(float* reduction, std::uint32_t count) {
    const double aim = this->aim();
    // A smaller distance is inaudible; reaching the target ends the loop early.
    constexpr double near = 1e-4;
    std::uint32_t i = 0;
    for (; i < count && current_ != aim; ++i) {
        const double distance = aim - current_;
        if (std::abs(distance) < near) {
            current_ = aim;
        } else {
            current_ += distance * (distance > 0.0 ? attackTake_ : releaseTake_);
        }
        reduction[i] = static_cast<float>(current_);
    }
    std::fill(reduction + i, reduction + count, static_cast<float>(current_));
}

}  // namespace orvalo::effect
