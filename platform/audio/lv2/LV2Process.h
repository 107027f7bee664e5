#pragma once

#include <lilv/lilv.h>

#include <atomic>
#include <cstdint>
#include <vector>

#include "platform/audio/lv2/LV2Controls.h"
#include "platform/audio/lv2/LV2EventLink.h"
#include "platform/audio/lv2/LV2Log.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2SequenceBuffer.h"
#include "platform/audio/lv2/LV2SequenceReader.h"
#include "platform/audio/lv2/LV2Worker.h"
#include "platform/audio/signal/AudioBlock.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// Everything that the render thread touches of one instance: its port buffers and its cycle.
class LV2Process {
  public:
    /// Off the render thread: makes the buffers and connects them. What it refers to must outlive
    /// it.
    LV2Process(const LV2PluginData& data, LilvInstance* instance, LV2Controls& controls,
               LV2Worker& worker, const LV2Log& log);

    /// One block: hands the plug-in its inputs, runs it, delivers the worker's answers and calls
    /// midiBlock (may be null) with what it sent, in time order over all ports. links (may be
    /// null): of the open UIs, which events go to and come from. sampleTime: of the block's
    /// first frame. Render thread.
    void run(const AudioBlock& input, const AudioBlock& output, std::int64_t sampleTime,
             const AUMIDIOutputEventBlock* midiBlock, const LV2EventLinks* links) noexcept;

    /// Frames, as the plug-in reported after its last block; 0 before.
    std::uint32_t latency() const noexcept { return latency_.load(std::memory_order_relaxed); }

  private:
    struct Control {
        std::uint32_t port;
        float value;
    };
    struct SequenceInput {
        std::uint32_t port;
        LV2SequenceBuffer buffer;
        bool takesTimePosition;
    };
    struct SequenceOutput {
        std::uint32_t port;
        LV2SequenceBuffer buffer;
        int cable;  // Below 0 for a port without MIDI.
        LV2SequenceReader reader;
    };

    void connect(const LV2PluginData& data);
    void prepare(const AudioBlock& input, const AudioBlock& output, std::int64_t sampleTime,
                 const LV2EventLinks* links) noexcept;
    void takeControlOutputs() noexcept;
    void sendEvents(std::uint32_t frameCount, std::int64_t sampleTime,
                    const AUMIDIOutputEventBlock* midiBlock, const LV2EventLinks* links) noexcept;
    SequenceOutput* nextOutput() noexcept;
    void send(const SequenceOutput& output, std::int64_t sampleTime,
              const AUMIDIOutputEventBlock* midiBlock) const noexcept;

    LilvInstance* instance_;
    LV2Controls& controls_;
    LV2Worker& worker_;
    const LV2Log& log_;
    std::vector<std::uint32_t> audioInputs_;
    std::vector<std::uint32_t> audioOutputs_;
    // None of these grows after the construction: the plug-in holds pointers into them.
    std::vector<Control> controlInputs_;
    std::vector<Control> controlOutputs_;
    std::vector<SequenceInput> sequenceInputs_;
    std::vector<SequenceOutput> sequenceOutputs_;
    std::vector<std::vector<float>> cvBuffers_;
    int latencyControl_ = -1;  // Its place among the control outputs.
    bool isFirstBlock_ = true;
    std::atomic<std::uint32_t> latency_{0};
};

}  // namespace orvalo
