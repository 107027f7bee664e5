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

/// A graph of nodes and what renders it. The operations may be called from any thread but the
/// render thread, while the engine renders or not; each takes effect before it returns, between two
/// quanta. Held by std::shared_ptr.
class AVAudioEngine : public NSObject, private AudioOutputSource {
  public:
    /// An engine on the system's output, which it starts looking for in the background.
    AVAudioEngine();
    /// An engine on a given output.
    explicit AVAudioEngine(std::unique_ptr<AudioOutput> output);
    ~AVAudioEngine() override;

    /// Makes a node part of the engine; an attached node is left as it is.
    void attach(const std::shared_ptr<AVAudioNode>& node);
    /// Takes a node out, with its connections.
    void detach(const std::shared_ptr<AVAudioNode>& node);

    /// Connects from's output to to's input, in place of what from fed and of what fed to; a mixer
    /// takes any number of inputs instead. format: of the connection, or absent for the format that
    /// from has by itself. Both nodes must be attached, to must have an input, only the main mixer
    /// feeds the output node, and no circle may close: otherwise a fatal error says so. A node that
    /// cannot take the format stays silent, with the reason on standard error.
    void connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                 const std::optional<AVAudioFormat>& format);
    /// Disconnects everything that feeds the node.
    void disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node);

    /// The mixer in front of the output: attached, and connected to the output, from the start.
    const std::shared_ptr<AVAudioMixerNode>& mainMixerNode() const { return mixer_; }
    const std::shared_ptr<AVAudioOutputNode>& outputNode() const { return outputNode_; }

    /// Gets ready what start() needs: which output it will be.
    void prepare();
    /// Starts rendering to the output; a running engine is left as it is. Throws NSError.
    void start();
    /// Stops rendering; what players hold stays. A stopped engine is left as it is.
    void stop();
    bool isRunning() const { return isRunning_; }

    /// From now on start() opens no device and renderOffline() renders, in this format. While
    /// stopped only; a running engine is a fatal error.
    void enableManualRenderingMode(const AVAudioFormat& format);
    bool isInManualRenderingMode() const { return isManual_; }
    /// Renders the next frameCount frames into the buffer, waiting for what players decode of the
    /// files that are scheduled. In manual mode, started, into a buffer of its channels and with
    /// room for the frames; otherwise a fatal error. One thread at a time.
    void renderOffline(std::uint32_t frameCount, AVAudioPCMBuffer& buffer);

    /// How often the output has run dry since start().
    std::uint64_t xrunCount() const;

  private:
    friend class AVAudioPlayerNode;

    void renderOutput(const AudioBlock& block) noexcept override;
    void outputFormatChanged(const AVAudioFormat& format) override;
    std::uint32_t renderOfflineSlice(AVAudioPCMBuffer& buffer, std::uint32_t from,
                                     std::uint32_t frameCount);

    /// A node's own format has changed: connections that state none follow.
    void derivedFormatsChanged();
    /// Compiles the graph and puts the plan in the render thread's way. With mutex_ held.
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
