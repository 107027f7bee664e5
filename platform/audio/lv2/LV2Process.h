#pragma once

#include <lilv/lilv.h>

#include <atomic>
#include <cstdint>
#include <vector>

#include "platform/audio/lv2/LV2Controls.h"
#include "platform/audio/lv2/LV2EventLink.h"
#include "platform/audio/lv2/LV2Log.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2Sequence.h"
#include "platform/audio/lv2/LV2Worker.h"
#include "platform/audio/signal/AudioBlock.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// The render thread's part of one instance: its port buffers and its run().
class LV2Process {
  public:
    /// Makes the buffers and connects them. The arguments must outlive it. Off the render thread.
    LV2Process(const LV2PluginData& data, LilvInstance* instance, LV2Controls& controls,
               LV2Worker& worker, const LV2Log& log);

    /// Renders one quantum: sets the inputs, runs the plug-in, delivers the worker's responses and
    /// calls midiBlock (may be null) with the MIDI events of all ports in time order. links (may be
    /// null): those of the open UIs. sampleTime: of the first frame. Render thread.
    void run(const AudioBlock& input, const AudioBlock& output, std::int64_t sampleTime,
             const AUMIDIOutputEventBlock* midiBlock, const LV2EventLinks* links) noexcept;

    /// Frames, as the plug-in reported last; 0 before the first quantum.
    std::uint32_t latency() const noexcept { return latency_.load(std::memory_order_relaxed); }
    /// Whether the plug-in has rendered a quantum.
    bool hasRun() const noexcept { return hasRun_.load(std::memory_order_acquire); }

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
    void readControlOutputs() noexcept;
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
    // Never resized after construction: the plug-in holds pointers into them.
    std::vector<Control> controlInputs_;
    std::vector<Control> controlOutputs_;
    std::vector<SequenceInput> sequenceInputs_;
    std::vector<SequenceOutput> sequenceOutputs_;
    std::vector<std::vector<float>> cvBuffers_;
    int latencyControl_ = -1;  // Index in controlOutputs_; below 0 without one.
    std::atomic<bool> hasRun_{false};
    std::atomic<std::uint32_t> latency_{0};
};

}  // namespace orvalo
