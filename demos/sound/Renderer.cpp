#include "demos/sound/Renderer.h"

#include <fluidsynth.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "demos/theory/Metre.h"

namespace orvalo {

namespace {

/// FluidSynth handles events at multiples of this many frames.
constexpr std::int64_t blockFrames = 64;
constexpr int drumBank = 128;
/// The General MIDI drum channel.
constexpr int drumChannel = 9;

constexpr int panControl = 10;
constexpr int expressionControl = 11;
constexpr int reverbControl = 91;
constexpr int chorusControl = 93;

/// The sound has ended below -96 dB of full scale for a quarter of a second.
constexpr float silence = 1.6e-5F;
constexpr std::int64_t silentFrames = 12032;
/// Seconds after which a sound that has not ended is faded out.
constexpr int longestTail = 8;

struct DeleteSettings {
    void operator()(fluid_settings_t* settings) const { delete_fluid_settings(settings); }
};
struct DeleteSynth {
    void operator()(fluid_synth_t* synth) const { delete_fluid_synth(synth); }
};

enum class Order { expression, noteOff, noteOn };

/// An event for the synthesiser, at a multiple of blockFrames.
struct Event {
    std::int64_t frame;
    Order order;
    int key;
    int value;
};

class Performance {
  public:
    Performance(const Score& score, std::size_t part, const std::filesystem::path& soundFont,
                int rate);
    StereoSound play();

  private:
    void selectProgram(const std::filesystem::path& soundFont);
    std::int64_t frameOf(int tick) const;
    std::vector<Event> events() const;
    void send(const Event& event);
    void writeUpTo(std::int64_t frame);
    void ringOut();

    const Score& score_;
    int part_;
    int channel_;
    int rate_;
    std::unique_ptr<fluid_settings_t, DeleteSettings> settings_;
    std::unique_ptr<fluid_synth_t, DeleteSynth> synth_;
    StereoSound sound_;
};

Performance::Performance(const Score& score, std::size_t part,
                         const std::filesystem::path& soundFont, int rate)
    : score_(score),
      part_(static_cast<int>(part)),
      channel_(score.parts[part].drums ? drumChannel : 0),
      rate_(rate),
      settings_(new_fluid_settings()) {
    // Silences FluidSynth: failures are thrown here, and its warnings only name SoundFont features
    // that it does not support.
    fluid_set_log_function(FLUID_ERR, nullptr, nullptr);
    fluid_set_log_function(FLUID_WARN, nullptr, nullptr);
    fluid_set_log_function(FLUID_INFO, nullptr, nullptr);
    fluid_settings_t* settings = settings_.get();
    fluid_settings_setnum(settings, "synth.sample-rate", rate);
    fluid_settings_setnum(settings, "synth.gain", 0.3);
    fluid_settings_setint(settings, "synth.polyphony", 512);
    fluid_settings_setint(settings, "synth.dynamic-sample-loading", 1);
    fluid_settings_setint(settings, "synth.lock-memory", 0);
    fluid_settings_setnum(settings, "synth.reverb.room-size", 0.55);
    fluid_settings_setnum(settings, "synth.reverb.damp", 0.35);
    fluid_settings_setnum(settings, "synth.reverb.level", 0.5);
    synth_.reset(new_fluid_synth(settings));
    if (!synth_) {
        throw std::runtime_error("FluidSynth cannot create a synthesiser");
    }
    selectProgram(soundFont);
}

void Performance::selectProgram(const std::filesystem::path& soundFont) {
    fluid_synth_t* synth = synth_.get();
    const int font = fluid_synth_sfload(synth, soundFont.c_str(), 1);
    if (font == FLUID_FAILED) {
        throw std::runtime_error("cannot read the SoundFont " + soundFont.string());
    }
    const Part& part = score_.parts[static_cast<std::size_t>(part_)];
    const int bank = part.drums ? drumBank : 0;
    if (fluid_synth_program_select(synth, channel_, font, bank, part.program) != FLUID_OK) {
        throw std::runtime_error("the SoundFont " + soundFont.string() + " lacks program " +
                                 std::to_string(part.program) + " of bank " + std::to_string(bank));
    }
    fluid_synth_cc(synth, channel_, panControl, part.pan);
    fluid_synth_cc(synth, channel_, expressionControl, 127);
    fluid_synth_cc(synth, channel_, reverbControl, part.reverb);
    fluid_synth_cc(synth, channel_, chorusControl, part.chorus);
}

std::int64_t Performance::frameOf(int tick) const {
    const double frame = tick * score_.quarterSeconds / ticksPerQuarter * rate_;
    return std::llround(frame / blockFrames) * blockFrames;
}

std::vector<Event> Performance::events() const {
    std::vector<Event> events;
    for (const Note& note : score_.notes) {
        if (note.part != part_) {
            continue;
        }
        const std::int64_t on = frameOf(note.tick);
        const std::int64_t off = std::max(frameOf(note.tick + note.length), on + blockFrames);
        events.push_back({on, Order::noteOn, note.key, note.velocity});
        events.push_back({off, Order::noteOff, note.key, 0});
    }
    for (const Swell& swell : score_.swells) {
        if (swell.part == part_) {
            events.push_back({frameOf(swell.tick), Order::expression, 0, swell.expression});
        }
    }
    std::ranges::stable_sort(events, [](const Event& one, const Event& other) {
        return one.frame != other.frame ? one.frame < other.frame : one.order < other.order;
    });
    return events;
}

void Performance::send(const Event& event) {
    switch (event.order) {
        case Order::noteOn:
            fluid_synth_noteon(synth_.get(), channel_, event.key, event.value);
            break;
        case Order::noteOff:
            fluid_synth_noteoff(synth_.get(), channel_, event.key);
            break;
        case Order::expression:
            fluid_synth_cc(synth_.get(), channel_, expressionControl, event.value);
            break;
    }
}

void Performance::writeUpTo(std::int64_t frame) {
    const std::size_t from = sound_.frames();
    const auto to = static_cast<std::size_t>(frame);
    if (to <= from) {
        return;
    }
    sound_.resize(to);
    const int count = static_cast<int>(to - from);
    if (fluid_synth_write_float(synth_.get(), count, sound_.left.data(), static_cast<int>(from), 1,
                                sound_.right.data(), static_cast<int>(from), 1) != FLUID_OK) {
        throw std::runtime_error("FluidSynth cannot render");
    }
}

void Performance::ringOut() {
    const auto start = static_cast<std::int64_t>(sound_.frames());
    const std::int64_t latest = start + static_cast<std::int64_t>(longestTail) * rate_;
    std::int64_t frame = start;
    bool silent = false;
    while (!silent && frame < latest) {
        frame += silentFrames;
        writeUpTo(frame);
        silent = true;
        for (auto at = static_cast<std::size_t>(frame - silentFrames); at < sound_.frames(); ++at) {
            silent = silent && std::abs(sound_.left[at]) < silence &&
                     std::abs(sound_.right[at]) < silence;
        }
    }
    if (silent) {
        return;
    }
    // Fade out the last second, so that folding it into the loop makes no step.
    const auto faded = static_cast<std::size_t>(rate_);
    const std::size_t from = sound_.frames() - faded;
    for (std::size_t index = 0; index < faded; ++index) {
        const float gain = 1.0F - static_cast<float>(index) / static_cast<float>(faded);
        sound_.left[from + index] *= gain;
        sound_.right[from + index] *= gain;
    }
}

StereoSound Performance::play() {
    for (const Event& event : events()) {
        writeUpTo(event.frame);
        send(event);
    }
    writeUpTo(std::max(frameOf(score_.loopTicks), static_cast<std::int64_t>(sound_.frames())));
    ringOut();
    return std::move(sound_);
}

}  // namespace

StereoSound render(const Score& score, std::size_t part, const std::filesystem::path& soundFont,
                   int rate) {
    return Performance(score, part, soundFont, rate).play();
}

}  // namespace orvalo
