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
    /// The format of the output, whatever the connection to it states: the mixer converts to this.
    /// forBus: 0. Any thread but the render thread.
    AVAudioFormat outputFormat(std::int64_t forBus) const;

  private:
    friend class AVAudioEngine;

    /// output: null for the system's, which is chosen at the first use.
    explicit AVAudioOutputNode(std::unique_ptr<AudioOutput> output);

    Inputs inputs() const override { return Inputs::one; }

    AudioOutput& output() const;
    void setManualFormat(const AVAudioFormat& format);

    mutable std::mutex mutex_;
    mutable std::mutex formatMutex_;  ///< Only one thread at a time may call AudioOutput::format().
    mutable std::unique_ptr<AudioOutput> output_;
    std::optional<AVAudioFormat> manualFormat_;
};

}  // namespace orvalo
