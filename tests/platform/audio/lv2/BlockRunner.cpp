#include "tests/platform/audio/lv2/BlockRunner.h"

#include <algorithm>

namespace orvalo::testing {

Channels renderBlocks(AUAudioUnit& unit, const Channels& input,
                      const std::vector<std::uint32_t>& blockLengths, std::size_t frameCount) {
    Channels from = input;
    Channels to(unit.outputChannelCount(), std::vector<float>(frameCount, -7.0F));
    std::size_t block = 0;
    for (std::size_t at = 0; at < frameCount; ++block) {
        const auto length =
            std::min<std::size_t>(blockLengths[block % blockLengths.size()], frameCount - at);
        std::vector<float*> inputs;
        std::vector<float*> outputs;
        for (auto& channel : from) {
            inputs.push_back(channel.data() + at);
        }
        for (auto& channel : to) {
            outputs.push_back(channel.data() + at);
        }
        const auto frames = static_cast<std::uint32_t>(length);
        unit.render({inputs.data(), unit.inputChannelCount(), frames},
                    {outputs.data(), unit.outputChannelCount(), frames});
        at += length;
    }
    return to;
}

}  // namespace orvalo::testing
