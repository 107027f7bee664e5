#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/BridgedRender.h"
#include "platform/audio/bridge/host/PluginUIChannel.h"
#include "platform/audio/bridge/host/ServiceSupervisor.h"
#include "tests/platform/audio/bridge/host/PatientLimits.h"
#include "tests/platform/audio/bridge/host/QuantumFeed.h"

namespace orvalo::testing {

/// The path of the fake service.
std::string fakeServicePath();

/// A supervised effect in the fake service, with two channels and three control inputs, and a feed
/// for it.
class FakeEffect {
  public:
    static constexpr std::uint32_t kFrames = QuantumFeed::kFrames;

    using Quantum = QuantumFeed::Quantum;
    struct Event {
        std::int64_t time;
        int cable;
        std::vector<int> bytes;

        friend bool operator==(const Event&, const Event&) = default;
    };

    /// Starts the service, in offline rendering. role: the end of the effect's URI, such as
    /// "segv:10"; see FakeService.cpp. program: the path of the fake service.
    explicit FakeEffect(const std::string& role, const BridgeLimits& limits = patientLimits(),
                        const std::string& program = fakeServicePath());

    Quantum render() { return feed_.next(); }
    /// Renders until a whole quantum is wet; false after 100 quanta.
    bool renderUntilWet();
    /// Renders count quanta.
    void render(int count);

    RenderSlot<AUMIDIOutputEventBlock>& midiBlock() { return midiBlock_; }
    BridgedRender& bridgedRender() { return render_; }
    ServiceSupervisor& supervisor() { return supervisor_; }
    PluginUIChannel& pluginUIChannel() { return *pluginUIChannel_; }
    const std::vector<Event>& events() const { return events_; }
    std::int64_t sampleTime() const { return feed_.sampleTime(); }

    static bool isWet(const Quantum& quantum);
    static bool isDry(const Quantum& quantum);

  private:
    std::vector<Event> events_;
    RenderSlot<AUMIDIOutputEventBlock> midiBlock_;
    BridgedRender render_;
    QuantumFeed feed_{[this](const AudioBlock& input, const AudioBlock& output) {
        render_.render(input, output);
    }};
    std::shared_ptr<PluginUIChannel> pluginUIChannel_ = std::make_shared<PluginUIChannel>(
        [this](ServiceCommand command) { supervisor_.post(std::move(command)); });
    ServiceSupervisor supervisor_;
};

}  // namespace orvalo::testing
