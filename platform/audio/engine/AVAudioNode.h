#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

class AVAudioEngine;

/// What a node does on the render thread.
class RenderKernel {
  public:
    virtual ~RenderKernel() = default;
    /// Fills output from input: as many frames, each with the channels of its connection; a source
    /// has an input without channels. At most kMaximumFramesToRender frames. Render thread; keeps
    /// its promises.
    virtual void render(const AudioBlock& input, const AudioBlock& output) noexcept = 0;
};

/// A node of an engine's graph, with one input and one output bus unless its class says otherwise.
class AVAudioNode : public NSObject {
  public:
    /// The engine that the node is attached to; absent before and after.
    std::shared_ptr<AVAudioEngine> engine() const { return engine_.lock(); }

    /// The format of a bus that nobody has given a format; what "derived" means.
    virtual AVAudioFormat outputFormat(std::int64_t forBus) const = 0;

  private:
    friend class AVAudioEngine;

    /// Makes the node ready for connections of these formats; input is null for a source. Called
    /// while the node is in no render plan. Throws NSError.
    virtual void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) = 0;
    virtual std::shared_ptr<RenderKernel> kernel() = 0;

    std::weak_ptr<AVAudioEngine> engine_;
};

}  // namespace orvalo
