#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/BridgeLimits.h"
#include "platform/audio/bridge/host/BridgedRender.h"
#include "platform/audio/bridge/host/LastState.h"
#include "platform/audio/bridge/host/PluginUIChannel.h"
#include "platform/audio/bridge/host/ServiceCommand.h"
#include "platform/audio/bridge/host/ServiceLog.h"
#include "platform/audio/bridge/host/ServiceProcess.h"
#include "platform/audio/bridge/wire/MessageChannel.h"

namespace orvalo {

/// One start of an effect's process, from spawning to its end: what is said to it, what it says,
/// and what is watched meanwhile. Trusts nothing that comes from there. The supervisor's thread.
class ServiceRun {
  public:
    /// Whom a run works for; all of it outlives the run.
    struct Surroundings {
        const ServiceOrder& order;
        const BridgeLimits& limits;
        BridgedRender& render;
        PluginUIChannel& pluginUI;
        LastState& last;
    };

    /// Starts the process and asks it for the effect, in its last known state. Throws NSError.
    explicit ServiceRun(const Surroundings& surroundings);
    ~ServiceRun();
    ServiceRun(const ServiceRun&) = delete;
    ServiceRun& operator=(const ServiceRun&) = delete;

    /// Whether the effect is there, and rendered by.
    bool isReady() const { return readySession_ != nullptr; }
    /// What the process said instead of making the effect.
    const std::optional<std::string>& refusal() const { return refusal_; }
    /// Says something to the process, once it is ready.
    void send(ServiceCommand command);

    /// Waits until something happens, the descriptor wakeup among it, at most for a moment, and
    /// deals with it. False when the run has come to its end.
    bool turn(int wakeup);

    /// How a run ended.
    struct End {
        std::string what;         ///< "was killed by signal 11 (Segmentation fault) while playing"
        std::string lastMessage;  ///< "" for none.
        std::vector<ServiceCommand> repeatable;  ///< Unanswered: for the next process.
        std::vector<ServiceCommand> lost;        ///< Unanswered, and not to be tried again.
    };
    /// Takes the effect from the render thread, ends the process, and keeps what it knew last.
    End finish();

  private:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    struct Pending {
        ServiceCommand command;
        std::uint32_t number = 0;
        Time since;  ///< When it was its turn to be answered.
    };

    void sendInstantiate();
    std::uint32_t transmit(bridge::HostMessage& message, int passed = -1);
    bool receive();
    bool take(const bridge::ServiceMessage& message);
    bool take(const bridge::Done& done);
    bool take(const bridge::State& state);
    bool take(const bridge::PluginUIOpened& opened);
    bool take(const bridge::PluginUIResizeRequest& request);
    bool take(const bridge::PluginUIClosed& closed);
    bool take(const bridge::PluginUIOutdated& outdated);
    bool takeInstantiated(const std::string& error);
    void settle(const Pending& pending, const bridge::Done& done);

    bool isInTime();
    bool isQuantumInTime(Time now);
    bool isPingInTime(Time now);
    bool isSmallEnough(Time now);
    bool end(std::string reason);
    /// From here on the input passes through, if it was not already.
    void takeSessionBack();
    std::string occasion() const;

    Surroundings surroundings_;
    ServiceProcess process_;
    MessageChannel channel_;
    ServiceLog log_;
    std::unique_ptr<RenderSession> session_;  // Until the effect is ready.
    RenderSession* readySession_ = nullptr;   // From then on, the render slot's.
    std::optional<std::string> refusal_;
    std::string reason_;  // Why the run ends, unless the process has ended by itself.

    std::uint32_t lastNumber_ = 0;
    std::deque<Pending> pending_;  // In the order in which they are answered.
    struct SentPing {
        std::uint32_t number = 0;
        Time since;
    };
    std::optional<SentPing> ping_;
    Time nextPing_;
    Time nextLook_;  // At its memory.
    std::uint32_t watchedQuantum_ = 0;
    Time watchedSince_;
    Time lastQuantum_;
    bool saidStateIsTooLarge_ = false;
    std::uint32_t openedFor_ = 0;  // The request that the UI was opened for last.
    bool isPluginUIOpen_ = false;  // By what the process says.
};

}  // namespace orvalo
