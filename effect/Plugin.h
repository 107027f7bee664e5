#pragma once

#include <lv2/atom/atom.h>
#include <lv2/options/options.h>

#include <array>
#include <cstdint>

#include "effect/ContextName.h"
#include "effect/HostTime.h"
#include "effect/MidiSequenceWriter.h"
#include "effect/Readings.h"
#include "effect/SequenceReader.h"
#include "effect/Uris.h"
#include "effect/dsp/Parameter.h"
#include "effect/dsp/Processor.h"

namespace orvalo::effect {

/// One instance of the plug-in: connects the host's ports to the processor.
class Plugin {
  public:
    /// The supported sample rates, in frames per second.
    static constexpr double lowestRate = 1000.0;
    static constexpr double highestRate = 1536000.0;

    /// map, options: may be null. Without a map the plug-in has no MIDI and no options.
    Plugin(double sampleRate, const LV2_URID_Map* map, const LV2_Options_Option* options);

    /// port: index in orvalo.ttl; others are ignored.
    void connect(std::uint32_t port, void* data);
    void activate();
    /// Render thread: neither allocates nor locks. frames may be 0.
    void run(std::uint32_t frames);

    ContextName& contextName() { return contextName_; }

  private:
    /// The ports that are neither parameters nor readings. Those of the side-chain come last,
    /// because only one of the two plug-ins has them.
    enum Port : std::uint8_t {
        midiIn,
        midiOut,
        inLeft,
        inRight,
        outLeft,
        outRight,
        latency = 42,
        sideChainLeft = 52,
        sideChainRight = 53,
    };

    void process(std::uint32_t frames);
    bool asksForSpectrum(const SequenceReader::Event& event) const;
    void sendSpectrum(std::uint32_t frame, MidiSequenceWriter& output);
    void writeReadings(const Processor::Meters& meters);

    Uris uris_;
    ContextName contextName_;
    HostTime hostTime_;
    Processor processor_;
    const LV2_Atom_Sequence* midiInput_ = nullptr;
    LV2_Atom_Sequence* midiOutput_ = nullptr;
    std::array<const float*, 2> inputs_{};
    std::array<float*, 2> outputs_{};
    std::array<const float*, 2> sideChain_{};
    float* latency_ = nullptr;
    std::array<const float*, parameterCount> parameters_{};
    std::array<float*, readingPorts.size()> readings_{};
    // Counts of messages and of calls of run(), which wrap around.
    std::uint16_t messagesIn_ = 0;
    std::uint16_t messagesOut_ = 0;
    std::uint16_t runs_ = 0;
};

}  // namespace orvalo::effect
