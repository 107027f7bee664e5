#pragma once

#include <lilv/lilv.h>
#include <lv2/options/options.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/effect/EventSequence.h"
#include "tests/effect/TestSignal.h"
#include "tests/effect/UridMap.h"

namespace orvalo::testing {

/// Runs the built plug-in as a host does.
class EffectHost {
  public:
    struct Setup {
        double rate = 48000.0;
        /// Text for the context name option; absent when null.
        const char* contextName = nullptr;
        /// Size of the MIDI output's buffer in bytes.
        std::uint32_t midiRoom = 65536;
        /// Whether the host maps URIs and connects the MIDI ports.
        bool midi = true;
    };

    EffectHost() : EffectHost(Setup{}) {}
    explicit EffectHost(const Setup& setup);
    ~EffectHost();
    EffectHost(const EffectHost&) = delete;
    EffectHost& operator=(const EffectHost&) = delete;

    /// Whether the plug-in could be instantiated.
    bool isThere() const { return instance_ != nullptr; }
    UridMap& uris() { return uris_; }
    const LV2_Options_Interface* options() const;
    LV2_Handle handle() const { return lilv_instance_get_handle(instance_); }

    /// A control port by its symbol.
    float& control(const std::string& symbol);

    void activate() { lilv_instance_activate(instance_); }
    void deactivate() { lilv_instance_deactivate(instance_); }

    /// One call of the plug-in on raw buffers; events are taken from and left in the sequences.
    void run(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
             std::uint32_t frames);
    EventSequence& midiIn() { return midiIn_; }
    EventSequence& midiOut() { return midiOut_; }

    /// Processes a signal and messages, in calls of the lengths given in turn, in place or not.
    /// What the plug-in sends is appended to sent(), counted in frames of all rendering so far.
    Stereo render(const Stereo& input, const std::vector<std::uint32_t>& lengths,
                  const std::vector<MidiMessage>& messages = {}, bool inPlace = false);
    Stereo render(const Stereo& input) { return render(input, {512}); }
    const std::vector<MidiMessage>& sent() const { return sent_; }

  private:
    void connectControls(bool midi);

    UridMap uris_;
    LilvInstance* instance_ = nullptr;
    std::vector<std::string> symbols_;
    std::vector<float> controls_;
    EventSequence midiIn_;
    EventSequence midiOut_;
    std::vector<MidiMessage> sent_;
    std::int64_t rendered_ = 0;
};

}  // namespace orvalo::testing
