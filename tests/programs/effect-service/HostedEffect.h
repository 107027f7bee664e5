#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"
#include "tests/programs/effect-service/ServiceProgram.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// An effect in a service that this program hosts. The request and the shared memory can be changed
/// before instantiate().
class HostedEffect {
  public:
    /// folder: an LV2 path of one folder.
    HostedEffect(const std::string& folder, const std::string& uri);

    /// Instantiates the effect; returns the error, "" for success.
    std::string instantiate();
    /// Calls instantiate(); throws std::runtime_error for an error.
    void mustInstantiate();

    /// Renders the input in blocks that cycle through the given lengths.
    Channels render(const Channels& input, const std::vector<std::uint32_t>& blockLengths,
                    std::size_t frameCount);
    /// Renders one quantum of the shared memory; throws std::runtime_error without an answer.
    void renderQuantum(std::uint32_t frameCount);
    /// The value in the shared memory of the control port with that symbol.
    float control(const std::string& symbol) const;

    bridge::Instantiate request;
    ServiceProgram service;
    /// The events that the effect has sent so far.
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
