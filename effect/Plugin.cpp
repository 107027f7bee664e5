#include "effect/Plugin.h"

#include <algorithm>

#include "effect/MidiSequenceReader.h"
#include "effect/MidiSequenceWriter.h"
#include "effect/dsp/ScopedFlushToZero.h"

namespace orvalo::effect {

Plugin::Plugin(double sampleRate, const LV2_URID_Map* map, const LV2_Options_Option* options)
    : uris_(map), contextName_(options, uris_), processor_(sampleRate) {}

void Plugin::connect(std::uint32_t port, void* data) {
    if (port >= firstMeter + meterCount) {
        return;
    }
    if (port >= firstMeter) {
        meters_.at(port - firstMeter) = static_cast<float*>(data);
    } else if (port >= firstParameter) {
        parameters_.at(port - firstParameter) = static_cast<const float*>(data);
    } else if (port >= outLeft) {
        outputs_.at(port - outLeft) = static_cast<float*>(data);
    } else if (port >= inLeft) {
        inputs_.at(port - inLeft) = static_cast<const float*>(data);
    } else if (port == midiOut) {
        midiOutput_ = static_cast<LV2_Atom_Sequence*>(data);
    } else {
        midiInput_ = static_cast<const LV2_Atom_Sequence*>(data);
    }
}

void Plugin::run(std::uint32_t frames) {
    const ScopedFlushToZero flushToZero;
    ParameterValues values;
    for (std::size_t i = 0; i < parameterCount; ++i) {
        if (parameters_[i] != nullptr) {
            values.set(static_cast<Parameter>(i), *parameters_[i]);
        }
    }
    processor_.beginBlock(values);
    process(frames);
    writeMeters(processor_.endBlock(frames));
}

void Plugin::process(std::uint32_t frames) {
    MidiSequenceReader input(midiInput_, uris_, frames);
    MidiSequenceWriter output(midiOutput_, uris_);
    std::uint32_t done = 0;
    const auto processUntil = [&](std::uint32_t end) {
        processor_.process(inputs_[0], inputs_[1], outputs_[0], outputs_[1], done, end, output);
        done = end;
    };
    MidiSequenceReader::Event event{};
    while (input.next(event)) {
        processUntil(event.frame);
        processor_.receive(event.bytes, event.size);
        ++messagesIn_;
    }
    processUntil(frames);
    messagesOut_ = static_cast<std::uint16_t>(messagesOut_ + output.written());
}

void Plugin::writeMeters(const Processor::Meters& meters) {
    const std::array<float, meterCount> values{meters.gainReduction,
                                               meters.ducking,
                                               meters.inputLevel,
                                               meters.outputLevel,
                                               static_cast<float>(messagesIn_),
                                               static_cast<float>(messagesOut_),
                                               meters.truePeak,
                                               static_cast<float>(++runs_)};
    for (std::size_t i = 0; i < meterCount; ++i) {
        if (meters_[i] != nullptr) {
            *meters_[i] = values[i];
        }
    }
}

}  // namespace orvalo::effect
