#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "effect/dsp/BeatGenerator.h"
#include "effect/dsp/Chunk.h"
#include "effect/dsp/Compressor.h"
#include "effect/dsp/DelayLine.h"
#include "effect/dsp/GainReductionTrigger.h"
#include "effect/dsp/LevelMeter.h"
#include "effect/dsp/MidiOutput.h"
#include "effect/dsp/NoteDucker.h"
#include "effect/dsp/OversampledGain.h"
#include "effect/dsp/Parameter.h"
#include "effect/dsp/SideChainFilter.h"
#include "effect/dsp/SmoothedValue.h"
#include "effect/dsp/SpectrumBank.h"
#include "effect/dsp/StereoChunk.h"
#include "effect/dsp/TruePeak.h"
#include "effect/dsp/TruePeakLimiter.h"

namespace orvalo::effect {

/// The whole effect on blocks of stereo samples. By default one gain for both channels, computed
/// from the louder one, without latency. Neither allocates nor locks after construction. The result
/// does not depend on how the frames are divided into blocks.
class Processor {
  public:
    /// The meters of a block, in dB; after an empty block those of the last other one.
    struct Meters {
        /// Deepest gain reduction of the compressor; 0 while bypassed, as the ducking.
        float gainReduction = 0.0F;
        /// Deepest ducking by notes and beats.
        float ducking = 0.0F;
        float inputLevel = LevelMeter::lowest;
        float outputLevel = LevelMeter::lowest;
        /// Highest interpolated value at the output, held for a quarter of a second.
        float truePeak = LevelMeter::lowest;
    };

    /// sampleRate: frames per second, above 0.
    explicit Processor(double sampleRate);

    /// Resets the state. A sounding note ends at the next frame that is processed.
    void reset();

    /// Begins a block of `frames` frames with new parameter values. They apply at once after a
    /// reset, otherwise smoothly.
    void beginBlock(const ParameterValues& values, std::uint32_t frames);

    /// The block's external side-chain; null if it is not connected.
    void setSideChain(const float* left, const float* right);

    /// Handles one MIDI message before the next frame.
    void receive(const std::uint8_t* bytes, std::uint32_t size) { ducker_.receive(bytes, size); }

    /// The host's musical time at the next frame; see BeatGenerator.
    void setHostTime(std::optional<double> quarters, double quartersPerSecond) {
        beat_.setHostTime(quarters, quartersPerSecond);
    }

    /// Processes frames [first, end) of the block's four buffers. Any output may be any input.
    /// Samples that are not finite, or above +300 dB, count as 0.
    void process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                 std::uint32_t first, std::uint32_t end, MidiOutput& midi);

    /// Ends the block and returns its meters.
    Meters endBlock();

    /// The spectrum of what the detector hears, behind its filter.
    SpectrumBank& spectrum() { return spectrum_; }

    /// The delay of the signal in frames, from the current block on.
    std::uint32_t latency() const { return latency_; }

  private:
    void configure(const ParameterValues& values);
    void configureGain(const ParameterValues& values);
    void configureStages(const ParameterValues& values);
    void processChunk(StereoChunk& signal, std::uint32_t first, std::uint32_t count,
                      MidiOutput& midi);
    /// left, right: the highest absolute values of the channels.
    void measureOutput(const StereoChunk& signal, float left, float right, std::uint32_t count);
    /// The two ways of a chunk from input to output. The second one is for what delays the signal,
    /// for listening, and for mid and side.
    void processDirectly(StereoChunk& signal, const StereoChunk& key, const Ducking& ducking,
                         Compressor::Gains& gains, std::uint32_t count);
    void processInStages(StereoChunk& signal, const StereoChunk& input, const Ducking& ducking,
                         Compressor::Gains& gains, std::uint32_t count);
    void delay(StereoChunk& signal, StereoChunk& dry, std::uint32_t count);
    void mixListened(StereoChunk& signal, const StereoChunk& key, std::uint32_t count);

    /// The longest look-ahead, and the longest delay of the signal, in frames.
    static std::uint32_t longestLookAhead(double sampleRate);
    static std::uint32_t longestLatency(double sampleRate, const TruePeakLimiter& limiter);

    double sampleRate_;
    ParameterValues values_;
    BeatGenerator beat_;
    NoteDucker ducker_;
    SideChainFilter filter_;
    Compressor compressor_;
    GainReductionTrigger trigger_;
    SmoothedValue enabled_;
    SmoothedValue listen_;

    // Used only by processInStages().
    std::array<OversampledGain, 2> oversampled_;
    OversampledGain* activeOversampling_ = nullptr;
    TruePeakLimiter limiter_;
    std::array<DelayLine, 2> delays_;
    std::array<DelayLine, 2> listenDelays_;
    DelayLine duckingDelay_;
    std::uint32_t lookAhead_ = 0;
    std::uint32_t latency_ = 0;
    bool isStaged_ = false;
    bool isLimiting_ = false;
    bool isMidSide_ = false;
    bool isListening_ = false;
    bool isExternal_ = false;

    std::array<const float*, 2> sideChain_{};
    SpectrumBank spectrum_;
    LevelMeter inputMeter_;
    LevelMeter outputMeter_;
    LevelMeter truePeakMeter_;
    TruePeak truePeakLeft_;
    TruePeak truePeakRight_;
    std::uint32_t frames_ = 0;
    float inputPeak_ = 0.0F;
    float outputPeak_ = 0.0F;
    float highestTruePeak_ = 0.0F;
    float unseenTruePeak_ = 0.0F;  // No amplitude up to this one would raise the meter.
    float deepestReduction_ = 0.0F;
    float deepestDucking_ = 0.0F;
    bool fresh_ = true;
};

}  // namespace orvalo::effect
