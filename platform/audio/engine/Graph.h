#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/audio/engine/AVAudioNode.h"

namespace orvalo {

/// The nodes of an engine and their connections. One thread at a time.
class Graph {
  public:
    struct Connection {
        std::shared_ptr<AVAudioNode> from;
        std::shared_ptr<AVAudioNode> to;
        std::optional<AVAudioFormat> format;  ///< Absent: derived from `from`.
    };

    void attach(const std::shared_ptr<AVAudioNode>& node);
    /// Removes the node with its connections.
    void detach(const std::shared_ptr<AVAudioNode>& node);
    bool isAttached(const std::shared_ptr<AVAudioNode>& node) const;
    const std::vector<std::shared_ptr<AVAudioNode>>& nodes() const { return nodes_; }

    /// Fatal when a node is not attached, `to` has no input, or a cycle would arise.
    void connect(const std::shared_ptr<AVAudioNode>& from, const std::shared_ptr<AVAudioNode>& to,
                 const std::optional<AVAudioFormat>& format);
    void disconnectInput(const std::shared_ptr<AVAudioNode>& node);

    /// The connections into a node, in the order in which they were made.
    std::vector<Connection> inputs(const std::shared_ptr<AVAudioNode>& node) const;

    /// The format of a connection, derived where none was given.
    AVAudioFormat format(const Connection& connection, const AVAudioFormat& engineFormat) const;

  private:
    std::vector<std::shared_ptr<AVAudioNode>> nodes_;
    std::vector<Connection> connections_;
};

}  // namespace orvalo
