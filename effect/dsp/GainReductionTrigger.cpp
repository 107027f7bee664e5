#include "effect/dsp/GainReductionTrigger.h"

#include <algorithm>
#include <cmath>

#include "effect/dsp/Extremes.h"
#include "effect/dsp/MidiBytes.h"
#include "effect/dsp/VectorClones.h"

namespace orvalo::effect {

GainReductionTrigger::GainReductionTrigger(double sampleRate)
    : minimumHold_(
          static_cast<std::uint32_t>(std::lround(minimumHoldMilliseconds * 0.001 * sampleRate))) {}

void GainReductionTrigger::configure(const Settings& settings) {
    settings_ = settings;
    endLevel_ = std::max(settings.level - hysteresisDecibels, 0.5F * settings.level);
    if (sounding_ && (!settings.armed || settings.note != soundingNote_ ||
                      settings.channel != soundingChannel_)) {
        mustEnd_ = true;
    }
}

std::uint8_t GainReductionTrigger::velocity(float held, float level) {
    const float excess = std::clamp(held - level, 0.0F, 20.0F);
    return static_cast<std::uint8_t>(std::min(127L, std::lround(40.0F + 5.0F * excess)));
}

bool GainReductionTrigger::start(float held, std::uint32_t frame, MidiOutput& output) {
    const auto status = static_cast<std::uint8_t>(midi::noteOn | settings_.channel);
    if (!output.write(frame, {status, settings_.note, velocity(held, settings_.level)})) {
        return false;
    }
    soundingNote_ = settings_.note;
    soundingChannel_ = settings_.channel;
    sounding_ = true;
    heldFrames_ = 0;
    return true;
}

bool GainReductionTrigger::end(std::uint32_t frame, MidiOutput& output) {
    const auto status = static_cast<std::uint8_t>(midi::noteOff | soundingChannel_);
    if (!output.write(frame, {status, soundingNote_, 64})) {
        return false;
    }
    sounding_ = false;
    mustEnd_ = false;
    return true;
}

ORVALO_VECTOR_CLONES
void GainReductionTrigger::process(const float* reduction, const float* held, std::uint32_t count,
                                   std::uint32_t firstFrame, MidiOutput& output) {
    if (count == 0 || (mustEnd_ && !end(firstFrame, output))) {
        return;
    }
    // Most chunks neither start nor end a note.
    if (sounding_ ? lowest(reduction, count) >= endLevel_
                  : highest(reduction, count, 0.0F) < settings_.level) {
        heldFrames_ = sounding_ ? std::min(heldFrames_ + count, minimumHold_) : heldFrames_;
        return;
    }
    std::uint32_t i = 0;
    while (i < count) {
        if (!sounding_) {
            while (i < count && reduction[i] < settings_.level) {
                ++i;
            }
            if (i == count || !settings_.armed || !start(held[i], firstFrame + i, output)) {
                return;
            }
        } else {
            while (i < count && (heldFrames_ < minimumHold_ || reduction[i] >= endLevel_)) {
                ++i;
                heldFrames_ = std::min(heldFrames_ + 1, minimumHold_);
            }
            if (i == count || !end(firstFrame + i, output)) {
                return;
            }
        }
    }
}

}  // namespace orvalo::effect
