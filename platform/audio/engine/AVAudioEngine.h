#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/output/AudioOutput.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

class AVAudioMixerNode;
class AVAudioOutputNode;

/// A graph of nodes and the thread that renders it. The operations may be called from any thread,
/// while the engine renders or not; each takes effect before it returns, between two quanta, and
/// what a disconnected node does afterwards never overlaps rendering. Held by std::shared_ptr.
class AVAudioEngine : public NSObject {
  public:
    /// An engine on the system's output, which is chosen at the first need.
    AVAudioEngine();
    /// An engine on a given output.
    explicit AVAudioEngine(std::unique_ptr<AudioOutput> output);
    ~AVAudioEngine() override;

    /// Makes a node part of the engine; an attached node is left as it is.
    void attach(const std::shared_ptr<AVAudioNode>& node);
    /// Takes a node out, with its connections.
    void detach(const std::shared_ptr<AVAudioNode>& node);

    /// Connects from's output to to's input, in place of what those buses were connected to; a
    /// mixer takes any number of inputs instead. format: of the connection, or absent for from's
    /// own output format. Both nodes must be attached, and the connection must close no circle:
    /// otherwise a fatal error says so. A node that cannot take the format stays unconnected, with
    /// the reason on standard error.
    void connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                 const std::optional<AVAudioFormat>& format);
    /// Disconnects everything that feeds the node.
    void disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node);

    /// The mixer in front of the output: attached, and connected to the output, from the start.
    std::shared_ptr<AVAudioMixerNode> mainMixerNode() const;
    std::shared_ptr<AVAudioOutputNode> outputNode() const;

    /// Gets ready what start() needs.
    void prepare();
    /// Starts rendering to the output; a running engine is left as it is. Throws NSError.
    void start();
    /// Stops rendering; what players hold stays. A stopped engine is left as it is.
    void stop();
    bool isRunning() const;

    /// From now on start() opens no device and renderOffline() renders. While stopped only.
    void enableManualRenderingMode(const AVAudioFormat& format);
    /// Renders the next frameCount frames into the buffer, waiting for what players decode. A
    /// started engine in manual mode; the buffer has its format and room. One thread at a time.
    void renderOffline(std::uint32_t frameCount, AVAudioPCMBuffer& buffer);

    /// How often the output has run dry since start().
    std::uint64_t xrunCount() const;

  private:
    class Implementation;
    std::shared_ptr<Implementation> implementation_;
};

}  // namespace orvalo
