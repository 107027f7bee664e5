#include "effect/Plugin.h"

#include <cstring>

#include "effect/DetectorEvents.h"
#include "effect/dsp/ScopedFlushToZero.h"

namespace orvalo::effect {

Plugin::Plugin(double sampleRate, const LV2_URID_Map* map, const LV2_Options_Option* options)
    : uris_(map), contextName_(options, uris_), hostTime_(uris_), processor_(sampleRate) {}

void Plugin::connect(std::uint32_t port, void* data) {
    switch (port) {
        case midiIn:
            midiInput_ = static_cast<const LV2_Atom_Sequence*>(data);
            return;
        case midiOut:
            midiOutput_ = static_cast<LV2_Atom_Sequence*>(data);
            return;
        case inLeft:
        case inRight:
            inputs_.at(port - inLeft) = static_cast<const float*>(data);
            return;
        case outLeft:
        case outRight:
            outputs_.at(port - outLeft) = static_cast<float*>(data);
            return;
        case sideChainLeft:
        case sideChainRight:
            sideChain_.at(port - sideChainLeft) = static_cast<const float*>(data);
            return;
        case latency:
            latency_ = static_cast<float*>(data);
            return;
        default:
            break;
    }
    for (std::size_t i = 0; i < readingPorts.size(); ++i) {
        if (readingPorts.at(i).port == port) {
            readings_.at(i) = static_cast<float*>(data);
        }
    }
    for (std::size_t i = 0; i < parameterCount; ++i) {
        if (parameterRanges.at(i).port == port) {
            parameters_.at(i) = static_cast<const float*>(data);
        }
    }
}

void Plugin::activate() {
    hostTime_.forget();
    processor_.reset();
}

void Plugin::run(std::uint32_t frames) {
    const ScopedFlushToZero flushToZero;
    ParameterValues values;
    for (std::size_t i = 0; i < parameterCount; ++i) {
        if (parameters_[i] != nullptr) {
            values.set(static_cast<Parameter>(i), *parameters_[i]);
        }
    }
    processor_.beginBlock(values, frames);
    processor_.setSideChain(sideChain_[0], sideChain_[1]);
    process(frames);
    writeReadings(processor_.endBlock());
    if (latency_ != nullptr) {
        *latency_ = static_cast<float>(processor_.latency());
    }
}

void Plugin::process(std::uint32_t frames) {
    SequenceReader input(midiInput_, uris_, frames);
    MidiSequenceWriter output(midiOutput_, uris_);
    std::uint32_t done = 0;
    const auto processUntil = [&](std::uint32_t end) {
        processor_.process(inputs_[0], inputs_[1], outputs_[0], outputs_[1], done, end, output);
        done = end;
    };
    SequenceReader::Event event{};
    while (input.next(event)) {
        processUntil(event.frame);
        if (event.isMidi) {
            processor_.receive(event.bytes, event.size);
            ++messagesIn_;
        } else if (hostTime_.read(event.bytes, event.size)) {
            processor_.setHostTime(hostTime_.quarters(), hostTime_.quartersPerSecond());
        } else if (asksForSpectrum(event)) {
            processor_.spectrum().watch();
        }
    }
    processUntil(frames);
    sendSpectrum(frames == 0 ? 0 : frames - 1, output);
    messagesOut_ = static_cast<std::uint16_t>(messagesOut_ + output.written());
}

bool Plugin::asksForSpectrum(const SequenceReader::Event& event) const {
    LV2_Atom_Object_Body object{};
    if (event.size < sizeof object) {
        return false;
    }
    std::memcpy(&object, event.bytes, sizeof object);
    return object.otype == uris_.watchDetector;
}

/// While the UI watches. Dropped when the notes leave no room.
void Plugin::sendSpectrum(std::uint32_t frame, MidiSequenceWriter& output) {
    DetectorSpectrum spectrum{};
    if (!processor_.spectrum().takeLevels(spectrum.values)) {
        return;
    }
    spectrum.object.otype = uris_.detectorSpectrum;
    spectrum.levels.key = uris_.bandLevels;
    spectrum.levels.value = {.size = sizeof spectrum.vector + sizeof spectrum.values,
                             .type = uris_.atomVector};
    spectrum.vector = {.child_size = sizeof(float), .child_type = uris_.atomFloat};
    output.append(frame, uris_.atomObject, &spectrum, sizeof spectrum);
}

void Plugin::writeReadings(const Processor::Meters& meters) {
    const std::array<float, readingPorts.size()> values{meters.gainReduction,
                                                        meters.ducking,
                                                        meters.inputLevel,
                                                        meters.outputLevel,
                                                        static_cast<float>(messagesIn_),
                                                        static_cast<float>(messagesOut_),
                                                        meters.truePeak,
                                                        static_cast<float>(++runs_)};
    for (std::size_t i = 0; i < readingPorts.size(); ++i) {
        if (readings_[i] != nullptr) {
            *readings_[i] = values[i];
        }
    }
}

}  // namespace orvalo::effect
