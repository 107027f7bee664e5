#pragma once

#include <lv2/atom/atom.h>
#include <lv2/options/options.h>

#include <array>
#include <cstdint>

#include "effect/ContextName.h"
#include "effect/Uris.h"
#include "effect/dsp/Parameter.h"
#include "effect/dsp/Processor.h"

namespace orvalo::effect {

/// One instance of the plug-in: the host's ports around the processor.
class Plugin {
  public:
    /// Rates that the effect runs at, in frames a second.
    static constexpr double lowestRate = 1000.0;
    static constexpr double highestRate = 1536000.0;

    /// Options may be absent; without a map the plug-in has no MIDI and no options.
    Plugin(double sampleRate, const LV2_URID_Map* map, const LV2_Options_Option* options);

    /// Ports by their index in the bundle's data; others are ignored.
    void connect(std::uint32_t port, void* data);
    void activate() { processor_.reset(); }
    /// On the audio thread: neither allocates nor locks. Any length, 0 too.
    void run(std::uint32_t frames);

    ContextName& contextName() { return contextName_; }

  private:
    /// The order of the ports; the parameters lie between these and the meters.
    enum Port : std::uint8_t {
        midiIn,
        midiOut,
        inLeft,
        inRight,
        outLeft,
        outRight,
        firstParameter
    };
    static constexpr std::uint32_t firstMeter = firstParameter + parameterCount;
    static constexpr std::size_t meterCount = 6;

    void process(std::uint32_t frames);
    void show(const Processor::Meters& meters);

    Uris uris_;
    ContextName contextName_;
    Processor processor_;
    const LV2_Atom_Sequence* midiInput_ = nullptr;
    LV2_Atom_Sequence* midiOutput_ = nullptr;
    std::array<const float*, 2> inputs_{};
    std::array<float*, 2> outputs_{};
    std::array<const float*, parameterCount> parameters_{};
    std::array<float*, meterCount> meters_{};
    // Messages so far; they wrap around as the ports say.
    std::uint16_t messagesIn_ = 0;
    std::uint16_t messagesOut_ = 0;
};

}  // namespace orvalo::effect
