#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/BridgeLimits.h"
#include "platform/audio/bridge/host/BridgedRender.h"
#include "platform/audio/bridge/host/PluginUIChannel.h"
#include "platform/audio/bridge/host/ServiceSupervisor.h"
#include "tests/platform/audio/bridge/host/QuantumFeed.h"

namespace orvalo::testing {

/// The fake service's program.
std::string fakeServicePath();

/// Limits for services that are meant to break them: what waits, waits long, what must not last,
/// does not.
BridgeLimits patientLimits();

/// A supervised effect of the fake service, of two channels and three control ports, and what it is
/// fed.
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

    /// role: as the fake service reads it, such as "segv:10". Started and offline.
    /// program: the fake service's.
    explicit FakeEffect(const std::string& role, const BridgeLimits& limits = patientLimits(),
                        const std::string& program = fakeServicePath());

    Quantum render() { return feed_.next(); }
    /// Renders until what comes out is the effect's, whole; false if it never is.
    bool renderUntilWet();
    /// Renders that many quanta.
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
