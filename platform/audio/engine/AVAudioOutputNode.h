#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/output/AudioOutput.h"

namespace orvalo {

/// The end of the graph: the output device, or memory in manual rendering mode.
class AVAudioOutputNode : public AVAudioNode {
  public:
    /// What the output wants to be given, whatever the connection to it says: the mixer in front
    /// converts once, to this. forBus: 0. Any thread but the render thread.
    AVAudioFormat outputFormat(std::int64_t forBus) const;

  private:
    friend class AVAudioEngine;

    /// output: absent for the system's, which is chosen at the first need.
    explicit AVAudioOutputNode(std::unique_ptr<AudioOutput> output);

    Inputs inputs() const override { return Inputs::one; }
    AVAudioFormat derivedFormat(const AVAudioFormat* input,
                                const AVAudioFormat& engineFormat) const override;
    void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) override;
    std::shared_ptr<RenderKernel> kernel() const override { return nullptr; }

    AudioOutput& output() const;
    void setManualFormat(const AVAudioFormat& format);

    mutable std::mutex mutex_;
    mutable std::mutex lookMutex_;  ///< Outputs look at their devices for one thread at a time.
    mutable std::unique_ptr<AudioOutput> output_;
    std::optional<AVAudioFormat> manualFormat_;
};

}  // namespace orvalo
