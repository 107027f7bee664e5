#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"
#include "tests/programs/effect-service/ServiceProgram.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// An effect in a process of its own, with this program as its host: the request that makes it and
/// the memory for its sound are ready, and can be changed before instantiate().
class HostedEffect {
  public:
    /// folder: an LV2 path of one folder.
    HostedEffect(const std::string& folder, const std::string& uri);

    /// Makes the effect; what has gone wrong, "" for nothing.
    std::string instantiate();
    /// The same, and throws std::runtime_error when anything has gone wrong.
    void mustInstantiate();

    /// Renders in blocks of the given lengths, over and over, until all the input is through.
    Channels render(const Channels& input, const std::vector<std::uint32_t>& blockLengths,
                    std::size_t frameCount);
    /// One quantum with the shared memory as it is; throws std::runtime_error without an answer.
    void renderQuantum(std::uint32_t frameCount);
    /// The value of the control port of that symbol, in the shared memory.
    float control(const std::string& symbol) const;

    bridge::Instantiate request;
    ServiceProgram service;
    /// What the effect has sent so far.
    std::vector<SentEvent> events;

    const LV2PluginData& data() const { return data_; }
    const SharedAudio& audio() const { return audio_; }
    const std::filesystem::path& stateFolder() const { return stateFolder_.path(); }

  private:
    void takeEvents(std::uint32_t frameCount);

    TemporaryFolder stateFolder_;
    LV2World world_;
    LV2PluginData data_;
    SharedAudio audio_;
    std::uint32_t quantum_ = 0;
    std::int64_t sampleTime_ = 0;
};

}  // namespace orvalo::testing
