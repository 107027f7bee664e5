#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/audio/engine/Graph.h"
#include "platform/audio/engine/RenderPlan.h"

namespace orvalo {

/// Turns a graph into a render plan. Keeps from plan to plan the formats that each node is prepared
/// for, and the mixer's converters with the frames that they hold. One thread at a time.
class GraphCompiler {
  public:
    /// Compiles all branches into the mixer; the plan is silent when the mixer does not feed the
    /// output. maximumFrames: the plan's. Calls renderSilence, which must replace the current plan
    /// by a silent one, before it prepares a node whose formats have changed. A branch that cannot
    /// be prepared is left out with a warning.
    std::unique_ptr<RenderPlan> compile(const Graph& graph,
                                        const std::shared_ptr<AVAudioNode>& mixer,
                                        const std::shared_ptr<AVAudioNode>& output,
                                        const AVAudioFormat& outputFormat,
                                        std::uint32_t maximumFrames,
                                        const std::function<void()>& renderSilence);

    /// Discards the frames that converters hold, for a new start.
    void forgetConverters() { converters_.clear(); }
    /// Removes a node that leaves the graph.
    void forget(const std::shared_ptr<AVAudioNode>& node) {
        prepared_.erase(node);
        converters_.erase(node);
    }

  private:
    struct Formats {
        std::optional<AVAudioFormat> input;
        AVAudioFormat output;
        friend bool operator==(const Formats&, const Formats&) = default;
    };
    /// A node of a branch with the formats of its connections.
    struct Stage {
        std::shared_ptr<AVAudioNode> node;
        Formats formats;
    };

    static std::vector<Stage> chain(const Graph& graph, const Graph::Connection& intoMixer,
                                    const AVAudioFormat& outputFormat);
    void prepare(const std::vector<Stage>& stages, const std::function<void()>& renderSilence);
    RenderPlan::Branch branch(const std::vector<Stage>& stages, const AVAudioFormat& outputFormat,
                              const std::function<void()>& renderSilence);
    std::shared_ptr<SampleRateConverter> converter(const std::shared_ptr<AVAudioNode>& from,
                                                   const AVAudioFormat& input,
                                                   const AVAudioFormat& output);

    std::map<std::shared_ptr<AVAudioNode>, Formats> prepared_;
    /// By the node that feeds the mixer.
    std::map<std::shared_ptr<AVAudioNode>, std::shared_ptr<SampleRateConverter>> converters_;
};

}  // namespace orvalo
