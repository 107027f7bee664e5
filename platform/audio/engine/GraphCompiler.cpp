#include "platform/audio/engine/GraphCompiler.h"

#include <glib.h>

#include <algorithm>

#include "platform/foundation/NSError.h"

namespace orvalo {

std::unique_ptr<RenderPlan> GraphCompiler::compile(const Graph& graph,
                                                   const std::shared_ptr<AVAudioNode>& mixer,
                                                   const std::shared_ptr<AVAudioNode>& output,
                                                   const AVAudioFormat& outputFormat,
                                                   const std::function<void()>& beforePreparing) {
    std::vector<RenderPlan::Branch> branches;
    const auto reachesOutput = graph.inputs(output);
    if (!reachesOutput.empty() && reachesOutput.front().from == mixer) {
        for (const auto& connection : graph.inputs(mixer)) {
            const auto stages = chain(graph, connection, outputFormat);
            try {
                prepare(stages, beforePreparing);
            } catch (const NSError& error) {
                g_warning("A part of the audio graph stays silent: %s", error.what());
                continue;
            }
            RenderPlan::Branch branch;
            for (const auto& [node, formats] : stages) {
                branch.steps.push_back({node->kernel(),
                                        formats.input ? formats.input->channelCount : 0,
                                        formats.output.channelCount});
            }
            branch.converter =
                converter(branches.size(), stages.back().formats.output, outputFormat);
            branches.push_back(std::move(branch));
        }
    }
    return std::make_unique<RenderPlan>(std::move(branches), outputFormat.channelCount);
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
                            const std::function<void()>& beforePreparing) {
    for (const auto& [node, formats] : stages) {
        const auto known = prepared_.find(node);
        if (known != prepared_.end() && known->second == formats) {
            continue;
        }
        beforePreparing();
        prepared_.erase(node);
        node->prepareToRender(formats.input ? &*formats.input : nullptr, formats.output);
        prepared_.emplace(node, formats);
    }
}

std::shared_ptr<SampleRateConverter> GraphCompiler::converter(std::size_t bus,
                                                              const AVAudioFormat& from,
                                                              const AVAudioFormat& to) {
    if (converters_.size() <= bus) {
        converters_.resize(bus + 1);
    }
    auto& kept = converters_[bus];
    if (from == to) {
        kept.reset();
    } else if (!kept || kept->inputFormat() != from || kept->outputFormat() != to) {
        kept = std::make_shared<SampleRateConverter>(from, to);
    }
    return kept;
}

}  // namespace orvalo
