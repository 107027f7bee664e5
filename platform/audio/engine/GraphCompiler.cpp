#include "platform/audio/engine/GraphCompiler.h"

#include <glib.h>

#include <algorithm>

#include "platform/foundation/NSError.h"

namespace orvalo {

std::unique_ptr<RenderPlan> GraphCompiler::compile(const Graph& graph,
                                                   const std::shared_ptr<AVAudioNode>& mixer,
                                                   const std::shared_ptr<AVAudioNode>& output,
                                                   const AVAudioFormat& outputFormat,
                                                   std::uint32_t maximumFrames,
                                                   const std::function<void()>& renderSilence) {
    std::vector<RenderPlan::Branch> branches;
    const auto reachesOutput = graph.inputs(output);
    if (!reachesOutput.empty() && reachesOutput.front().from == mixer) {
        for (const auto& connection : graph.inputs(mixer)) {
            try {
                branches.push_back(
                    branch(chain(graph, connection, outputFormat), outputFormat, renderSilence));
            } catch (const NSError& error) {
                g_warning("A branch of the audio graph stays silent: %s", error.what());
            }
        }
    }
    return std::make_unique<RenderPlan>(std::move(branches), outputFormat.channelCount,
                                        maximumFrames);
}

RenderPlan::Branch GraphCompiler::branch(const std::vector<Stage>& stages,
                                         const AVAudioFormat& outputFormat,
                                         const std::function<void()>& renderSilence) {
    prepare(stages, renderSilence);
    RenderPlan::Branch branch;
    for (const auto& [node, formats] : stages) {
        branch.steps.push_back({node->kernel(), formats.input ? formats.input->channelCount : 0,
                                formats.output.channelCount});
    }
    const auto& last = stages.back();
    branch.converter = converter(last.node, last.formats.output, outputFormat);
    return branch;
}

std::vector<GraphCompiler::Stage> GraphCompiler::chain(const Graph& graph,
                                                       const Graph::Connection& intoMixer,
                                                       const AVAudioFormat& outputFormat) {
    std::vector<Stage> stages;
    for (std::vector<Graph::Connection> next{intoMixer}; !next.empty();) {
        const auto connection = next.front();
        Stage stage{connection.from, {{}, graph.format(connection, outputFormat)}};
        next = graph.inputs(stage.node);
        if (!next.empty()) {
            stage.formats.input = graph.format(next.front(), outputFormat);
        }
        stages.push_back(std::move(stage));
    }
    std::reverse(stages.begin(), stages.end());
    return stages;
}

void GraphCompiler::prepare(const std::vector<Stage>& stages,
                            const std::function<void()>& renderSilence) {
    for (const auto& [node, formats] : stages) {
        const auto known = prepared_.find(node);
        if (known != prepared_.end() && known->second == formats) {
            continue;
        }
        if (known != prepared_.end()) {
            renderSilence();
            prepared_.erase(known);
        }
        node->prepareToRender(formats.input ? &*formats.input : nullptr, formats.output);
        prepared_.emplace(node, formats);
    }
}

std::shared_ptr<SampleRateConverter> GraphCompiler::converter(
    const std::shared_ptr<AVAudioNode>& from, const AVAudioFormat& input,
    const AVAudioFormat& output) {
    if (input == output) {
        converters_.erase(from);
        return nullptr;
    }
    auto& kept = converters_[from];
    if (!kept || kept->inputFormat() != input || kept->outputFormat() != output) {
        kept = std::make_shared<SampleRateConverter>(input, output);
    }
    if (kept->inputFramesNeeded(1) > kMaximumFramesToRender) {
        throw NSError("AVAudioEngine", 1,
                      "The rates " + std::to_string(input.sampleRate) + " Hz and " +
                          std::to_string(output.sampleRate) + " Hz are too far apart.");
    }
    return kept;
}

}  // namespace orvalo
