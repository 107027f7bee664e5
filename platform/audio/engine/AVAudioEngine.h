#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/audio/engine/AVAudioMixerNode.h"
#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/engine/AVAudioOutputNode.h"
#include "platform/audio/engine/Graph.h"
#include "platform/audio/engine/GraphCompiler.h"
#include "platform/audio/output/AudioOutput.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/signal/RenderSlot.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// Renders a graph of nodes to an output device or into memory. Any thread but the render thread,
/// also while the engine renders; an operation takes effect between two quanta, before it returns.
/// Held by std::shared_ptr.
class AVAudioEngine : public NSObject, private AudioOutputSource {
  public:
    /// Uses the system's output, which is opened in the background.
    AVAudioEngine();
    /// Uses the given output.
    explicit AVAudioEngine(std::unique_ptr<AudioOutput> output);
    ~AVAudioEngine() override;

    /// Adds a node; does nothing for an attached one.
    void attach(const std::shared_ptr<AVAudioNode>& node);
    /// Removes a node with its connections.
    void detach(const std::shared_ptr<AVAudioNode>& node);

    /// Connects the output of `from` to the input of `to`. Replaces the previous connection of
    /// either, but a mixer may have any number of inputs. format: of the connection; absent for the
    /// format of `from` itself. Fatal when a node is not attached, `to` has no input, a node other
    /// than the main mixer feeds the output node, or a cycle would arise. A node that does not
    /// support the format stays silent; a warning gives the reason.
    void connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                 const std::optional<AVAudioFormat>& format);
    /// Removes all connections into the node.
    void disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node);

    /// The mixer before the output node: attached and connected to it from the start.
    const std::shared_ptr<AVAudioMixerNode>& mainMixerNode() const { return mixer_; }
    const std::shared_ptr<AVAudioOutputNode>& outputNode() const { return outputNode_; }

    /// Blocks until the output's format is known, which start() needs.
    void prepare();
    /// Starts rendering to the output; does nothing while running. Throws NSError.
    void start();
    /// Stops rendering; players keep their positions. Does nothing while stopped.
    void stop();
    bool isRunning() const { return isRunning_; }

    /// From now on start() opens no device, and renderOffline() renders in this format. Fatal while
    /// running.
    void enableManualRenderingMode(const AVAudioFormat& format);
    /// Renders the next frameCount frames into the buffer; blocks until players have decoded them.
    /// Fatal unless started in manual mode, with a buffer of its channel count and enough capacity.
    /// One thread at a time.
    void renderOffline(std::uint32_t frameCount, AVAudioPCMBuffer& buffer);
    /// renderOffline() for as many frames as each unit renders in one call: renders up to
    /// frameCount frames to the buffer's frame `from` on, and returns how many.
    std::uint32_t renderOfflineSlice(std::uint32_t frameCount, AVAudioPCMBuffer& buffer,
                                     std::uint32_t from = 0);

    /// Xruns of the output since start(); 0 while stopped and in manual mode.
    std::uint64_t xrunCount() const;

  private:
    friend class AVAudioPlayerNode;

    void renderOutput(const AudioBlock& block) noexcept override;
    void outputFormatChanged(const AVAudioFormat& format) override;
    void outputDeviceMissing(bool isMissing) override;

    /// A node's own format has changed: recompiles connections that state no format.
    void derivedFormatsChanged();
    /// Compiles the graph and swaps the render plan. With mutex_ held.
    void publish();

    const std::shared_ptr<AVAudioMixerNode> mixer_;
    const std::shared_ptr<AVAudioOutputNode> outputNode_;

    std::mutex mutex_;       ///< Guards the graph and its compiler.
    std::mutex startMutex_;  ///< Makes start() and stop() exclusive; taken before mutex_.
    Graph graph_;
    GraphCompiler compiler_;
    RenderSlot<RenderPlan> plan_;
    std::atomic<bool> isRunning_ = false;
    std::atomic<bool> isManual_ = false;
};

}  // namespace orvalo
