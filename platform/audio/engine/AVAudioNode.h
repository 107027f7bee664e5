#pragma once

#include <memory>
#include <mutex>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

class AVAudioEngine;

/// A node's work on the render thread.
class RenderKernel {
  public:
    virtual ~RenderKernel() = default;
    /// Fills output from input. Both have the same frame count, at most kMaximumFramesToRender, or
    /// offline the node's maximumFramesToRender(), and the channels of their connections (a
    /// source's input has none); they do not overlap. Render thread: never allocates, locks, logs
    /// or blocks.
    virtual void render(const AudioBlock& input, const AudioBlock& output) noexcept = 0;
};

/// A node of an engine's graph, with one output. Its class determines the number of its inputs.
class AVAudioNode : public NSObject {
  public:
    /// The engine that the node is attached to; absent while it is not attached. Any thread.
    std::shared_ptr<AVAudioEngine> engine() const;

  protected:
    enum class Inputs { none, one, any };

  private:
    friend class AVAudioEngine;
    friend class Graph;
    friend class GraphCompiler;

    virtual Inputs inputs() const = 0;

    /// The format of the node's output when the connection states none. input: the format of the
    /// connection that feeds the node, null without one; engineFormat: the format of the output.
    virtual AVAudioFormat derivedFormat(const AVAudioFormat* /*input*/,
                                        const AVAudioFormat& engineFormat) const {
        return engineFormat;
    }

    /// Prepares the node for connections of these formats; input is null when nothing feeds it.
    /// Called when they have changed, while the node is in no render plan. Throws NSError.
    virtual void prepareToRender(const AVAudioFormat* /*input*/, const AVAudioFormat& /*output*/) {}

    /// Null for nodes that the engine itself renders.
    virtual std::shared_ptr<RenderKernel> kernel() const { return nullptr; }

    /// The most frames that one render call may have in offline rendering.
    virtual std::uint32_t maximumFramesToRender() const { return kMaximumOfflineFrames; }

    /// Blocks until the node can render its next frameCount frames, or has no more. Returns how
    /// many of them the next render call may have; fewer are whole multiples of
    /// kMaximumFramesToRender. For offline rendering, between two render calls.
    virtual std::uint32_t awaitInput(std::uint32_t frameCount) { return frameCount; }

    /// Whether the engine renders without a device, as fast as it can. Called when the node is
    /// attached, before it renders.
    virtual void setRenderingOffline(bool /*isOffline*/) {}

    /// The engine starts. Called before each start, while no node renders.
    virtual void engineStarts() {}

    void setEngine(const std::shared_ptr<AVAudioEngine>& engine);

    mutable std::mutex engineMutex_;
    std::weak_ptr<AVAudioEngine> engine_;
};

}  // namespace orvalo
