#include "platform/audio/lv2/LV2Process.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/audio/lv2/URIDMap.h"

namespace orvalo {

namespace {

/// Handlers may read three bytes of every message.
constexpr std::uint32_t kReadableBytes = 3;

// An hour at 192 kHz; more is a plug-in's error.
constexpr float kLongestLatency = 691200000.0F;

}  // namespace

LV2Process::LV2Process(const LV2PluginData& data, LilvInstance* instance, LV2Controls& controls,
                       LV2Worker& worker, const LV2Log& log)
    : instance_(instance), controls_(controls), worker_(worker), log_(log) {
    int cable = 0;
    for (const auto& port : data.ports) {
        switch (port.kind) {
            case LV2PortKind::audio:
                (port.isInput ? audioInputs_ : audioOutputs_).push_back(port.index);
                break;
            case LV2PortKind::control:
                if (port.reportsLatency) {
                    latencyControl_ = static_cast<int>(controlOutputs_.size());
                }
                (port.isInput ? controlInputs_ : controlOutputs_)
                    .push_back({port.index, controls.value(port.index)});
                break;
            case LV2PortKind::cv:
                cvBuffers_.emplace_back(kMaximumFramesToRender);
                break;
            case LV2PortKind::sequence:
                if (port.isInput) {
                    sequenceInputs_.push_back(
                        {port.index, LV2SequenceBuffer(port.bufferSize), port.takesTimePosition});
                } else {
                    sequenceOutputs_.push_back({port.index,
                                                LV2SequenceBuffer(port.bufferSize),
                                                port.carriesMIDI ? cable++ : -1,
                                                {}});
                }
                break;
            case LV2PortKind::unconnected:
                break;
        }
    }
    connect(data);
}

void LV2Process::connect(const LV2PluginData& data) {
    auto controlInput = controlInputs_.begin();
    auto controlOutput = controlOutputs_.begin();
    auto sequenceInput = sequenceInputs_.begin();
    auto sequenceOutput = sequenceOutputs_.begin();
    auto cvBuffer = cvBuffers_.begin();
    for (const auto& port : data.ports) {
        void* location = nullptr;
        switch (port.kind) {
            case LV2PortKind::control:
                location = port.isInput ? &(controlInput++)->value : &(controlOutput++)->value;
                break;
            case LV2PortKind::cv:
                location = (cvBuffer++)->data();
                break;
            case LV2PortKind::sequence:
                location = port.isInput ? (sequenceInput++)->buffer.sequence()
                                        : (sequenceOutput++)->buffer.sequence();
                break;
            case LV2PortKind::audio:
            case LV2PortKind::unconnected:
                break;
        }
        lilv_instance_connect_port(instance_, port.index, location);
    }
}

void LV2Process::run(const AudioBlock& input, const AudioBlock& output, std::int64_t sampleTime,
                     const AUMIDIOutputEventBlock* midiBlock, const LV2EventLinks* links) noexcept {
    prepare(input, output, sampleTime, links);
    lilv_instance_run(instance_, output.frameCount);
    worker_.finishCycle();
    readControlOutputs();
    sendEvents(output.frameCount, sampleTime, midiBlock, links);
    hasRun_.store(true, std::memory_order_release);
}

void LV2Process::prepare(const AudioBlock& input, const AudioBlock& output, std::int64_t sampleTime,
                         const LV2EventLinks* links) noexcept {
    for (std::size_t channel = 0; channel < audioInputs_.size(); ++channel) {
        lilv_instance_connect_port(instance_, audioInputs_[channel], input.channels[channel]);
    }
    for (std::size_t channel = 0; channel < audioOutputs_.size(); ++channel) {
        lilv_instance_connect_port(instance_, audioOutputs_[channel], output.channels[channel]);
    }
    for (auto& control : controlInputs_) {
        control.value = controls_.value(control.port);
    }
    for (auto& sequence : sequenceInputs_) {
        // Plug-ins extrapolate later positions, as time never jumps.
        if (!hasRun() && sequence.takesTimePosition) {
            sequence.buffer.writeTimePosition(sampleTime);
        } else {
            sequence.buffer.clearForInput();
        }
        if (links != nullptr) {
            for (const auto& link : *links) {
                link->deliver(sequence.port, sequence.buffer);
            }
        }
    }
    for (auto& sequence : sequenceOutputs_) {
        sequence.buffer.clearForOutput();
    }
}

void LV2Process::readControlOutputs() noexcept {
    for (const auto& control : controlOutputs_) {
        controls_.setValue(control.port, control.value);
    }
    if (latencyControl_ >= 0) {
        const float frames = controlOutputs_[static_cast<std::size_t>(latencyControl_)].value;
        // False for NaN.
        const bool isValid = frames > 0.0F && frames <= kLongestLatency;
        latency_.store(isValid ? static_cast<std::uint32_t>(std::lround(frames)) : 0,
                       std::memory_order_relaxed);
    }
}

void LV2Process::sendEvents(std::uint32_t frameCount, std::int64_t sampleTime,
                            const AUMIDIOutputEventBlock* midiBlock,
                            const LV2EventLinks* links) noexcept {
    for (auto& output : sequenceOutputs_) {
        output.reader =
            LV2SequenceReader(output.buffer.sequence(), output.buffer.capacity(), frameCount);
    }
    while (auto* output = nextOutput()) {
        send(*output, sampleTime, midiBlock);
        if (links != nullptr) {
            for (const auto& link : *links) {
                link->mirror(output->port, output->reader.event()->body);
            }
        }
        output->reader.next();
    }
}

LV2Process::SequenceOutput* LV2Process::nextOutput() noexcept {
    SequenceOutput* earliest = nullptr;
    for (auto& output : sequenceOutputs_) {
        if (output.reader.event() != nullptr &&
            (earliest == nullptr || output.reader.frame() < earliest->reader.frame())) {
            earliest = &output;
        }
    }
    return earliest;
}

void LV2Process::send(const SequenceOutput& output, std::int64_t sampleTime,
                      const AUMIDIOutputEventBlock* midiBlock) const noexcept {
    const auto& urids = LV2URIDs::shared();
    const auto& body = output.reader.event()->body;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&body + 1);
    if (body.type == urids.midiEvent) {
        if (output.cable < 0 || body.size == 0 || midiBlock == nullptr || !*midiBlock) {
            return;
        }
        std::array<std::uint8_t, kReadableBytes> padded{};
        if (body.size < kReadableBytes) {
            std::copy_n(bytes, body.size, padded.begin());
            bytes = padded.data();
        }
        (*midiBlock)(sampleTime + output.reader.frame(), static_cast<std::uint8_t>(output.cable),
                     body.size, bytes);
    } else if ((body.type == urids.atomObject || body.type == urids.atomBlank) &&
               body.size >= sizeof(LV2_Atom_Object_Body) &&
               reinterpret_cast<const LV2_Atom_Object_Body*>(bytes)->otype == urids.stateChanged) {
        log_.write(urids.logTrace, "its state has changed");
    }
}

}  // namespace orvalo
