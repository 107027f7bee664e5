#include "platform/audio/engine/Graph.h"

#include <algorithm>

#include "platform/foundation/FatalError.h"

namespace orvalo {

void Graph::attach(const std::shared_ptr<AVAudioNode>& node) {
    if (!isAttached(node)) {
        nodes_.push_back(node);
    }
}

void Graph::detach(const std::shared_ptr<AVAudioNode>& node) {
    std::erase_if(connections_, [&](const Connection& connection) {
        return connection.from == node || connection.to == node;
    });
    std::erase(nodes_, node);
}

bool Graph::isAttached(const std::shared_ptr<AVAudioNode>& node) const {
    return std::find(nodes_.begin(), nodes_.end(), node) != nodes_.end();
}

void Graph::connect(const std::shared_ptr<AVAudioNode>& from,
                    const std::shared_ptr<AVAudioNode>& to,
                    const std::optional<AVAudioFormat>& format) {
    if (!isAttached(from) || !isAttached(to)) {
        fatalError("A node must be attached to the engine before it is connected.");
    }
    if (to->inputs() == AVAudioNode::Inputs::none) {
        fatalError("A node without an input cannot be connected to.");
    }
    for (auto upstream = std::vector{from}; !upstream.empty();) {
        const auto node = upstream.back();
        upstream.pop_back();
        if (node == to) {
            fatalError("A connection must not close a circle.");
        }
        for (const auto& connection : inputs(node)) {
            upstream.push_back(connection.from);
        }
    }
    std::erase_if(connections_, [&](const Connection& connection) {
        return connection.from == from ||
               (connection.to == to && to->inputs() == AVAudioNode::Inputs::one);
    });
    connections_.push_back({from, to, format});
}

void Graph::disconnectInput(const std::shared_ptr<AVAudioNode>& node) {
    std::erase_if(connections_,
                  [&](const Connection& connection) { return connection.to == node; });
}

std::vector<Graph::Connection> Graph::inputs(const std::shared_ptr<AVAudioNode>& node) const {
    std::vector<Connection> result;
    std::copy_if(connections_.begin(), connections_.end(), std::back_inserter(result),
                 [&](const Connection& connection) { return connection.to == node; });
    return result;
}

AVAudioFormat Graph::format(const Connection& connection, const AVAudioFormat& engineFormat) const {
    if (connection.format) {
        return *connection.format;
    }
    const auto feeding = inputs(connection.from);
    if (feeding.empty()) {
        return connection.from->derivedFormat(nullptr, engineFormat);
    }
    const auto input = format(feeding.front(), engineFormat);
    return connection.from->derivedFormat(&input, engineFormat);
}

}  // namespace orvalo
