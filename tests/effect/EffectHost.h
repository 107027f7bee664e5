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

/// A minimal LV2 host for the built plug-in.
class EffectHost {
  public:
    struct Setup {
        double rate = 48000.0;
        /// The context name option; null for none.
        const char* contextName = nullptr;
        /// Size of the MIDI output buffer in bytes.
        std::uint32_t midiRoom = 65536;
        /// Whether the host maps URIs and connects the MIDI ports.
        bool midi = true;
        /// The plug-in with a side-chain input.
        bool hasSideChain = false;
    };

    EffectHost() : EffectHost(Setup{}) {}
    explicit EffectHost(const Setup& setup);
    ~EffectHost();
    EffectHost(const EffectHost&) = delete;
    EffectHost& operator=(const EffectHost&) = delete;

    /// Whether instantiation succeeded.
    bool isThere() const { return instance_ != nullptr; }
    UridMap& uris() { return uris_; }
    const LV2_Options_Interface* options() const;
    LilvInstance* instance() const { return instance_; }
    LV2_Handle handle() const { return lilv_instance_get_handle(instance_); }

    /// The value of a control port.
    float& control(const std::string& symbol);

    /// Connects the side-chain input of the next run(); null disconnects it.
    void connectSideChain(const float* left, const float* right);

    void activate() { lilv_instance_activate(instance_); }
    void deactivate() { lilv_instance_deactivate(instance_); }

    /// Calls run() once on raw buffers, with the events in the sequences.
    void run(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
             std::uint32_t frames);
    EventSequence& midiIn() { return midiIn_; }
    EventSequence& midiOut() { return midiOut_; }

    /// Processes a signal and messages in blocks that cycle through the given lengths, in place or
    /// not. Appends sent messages to sent(), with frames counted from the first rendering.
    Stereo render(const Stereo& input, const std::vector<std::uint32_t>& lengths,
                  const std::vector<MidiMessage>& messages = {}, bool inPlace = false);
    Stereo render(const Stereo& input) { return render(input, {512}); }
    const std::vector<MidiMessage>& sent() const { return sent_; }

  private:
    void connectControls(bool midi);

    const LilvPlugin* plugin_;
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
