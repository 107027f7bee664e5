#pragma once

#include <memory>
#include <mutex>

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
    /// has an input without channels. The two do not overlap. At most kMaximumFramesToRender
    /// frames. Render thread; keeps its promises.
    virtual void render(const AudioBlock& input, const AudioBlock& output) noexcept = 0;
};

/// A node of an engine's graph. It has one output; how many inputs it takes is its class's affair.
class AVAudioNode : public NSObject {
  public:
    /// The engine that the node is attached to; absent before and after. Any thread.
    std::shared_ptr<AVAudioEngine> engine() const;

  protected:
    enum class Inputs { none, one, any };

  private:
    friend class AVAudioEngine;
    friend class Graph;
    friend class GraphCompiler;

    virtual Inputs inputs() const = 0;

    /// The format of the node's output when the connection states none. input: what feeds the
    /// node, null when nothing does; engineFormat: what the output wants.
    virtual AVAudioFormat derivedFormat(const AVAudioFormat* input,
                                        const AVAudioFormat& engineFormat) const = 0;

    /// Makes the node ready for connections of these formats; input is null when nothing feeds it.
    /// Called when they have changed, while the node is in no render plan. Throws NSError.
    virtual void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) = 0;

    /// What renders; null for nodes that the engine itself renders.
    virtual std::shared_ptr<RenderKernel> kernel() const = 0;

    /// Waits until the node can render its next kMaximumFramesToRender frames, or has no more. For
    /// offline rendering, between two render calls.
    virtual void awaitInput() {}

    /// Whether the engine renders without a device, as fast as it can. Told to an attached node
    /// before it renders.
    virtual void setRenderingOffline(bool /*isOffline*/) {}

    void setEngine(const std::shared_ptr<AVAudioEngine>& engine);

    mutable std::mutex engineMutex_;
    std::weak_ptr<AVAudioEngine> engine_;
};

}  // namespace orvalo
