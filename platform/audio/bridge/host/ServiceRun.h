#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/audio/bridge/host/BridgeLimits.h"
#include "platform/audio/bridge/host/BridgedRender.h"
#include "platform/audio/bridge/host/LastState.h"
#include "platform/audio/bridge/host/PendingRequests.h"
#include "platform/audio/bridge/host/PluginUIChannel.h"
#include "platform/audio/bridge/host/ServiceCommand.h"
#include "platform/audio/bridge/host/ServiceLog.h"
#include "platform/audio/bridge/host/ServiceProcess.h"
#include "platform/audio/bridge/wire/MessageChannel.h"

namespace orvalo {

/// One effect service from its start to its end. Validates everything that the service sends. The
/// supervisor's thread.
class ServiceRun {
  public:
    /// Outlives the run.
    struct Surroundings {
        const ServiceOrder& order;
        const BridgeLimits& limits;
        BridgedRender& render;
        PluginUIChannel& pluginUI;
        LastState& last;
    };

    /// Starts the process and requests the effect in its last known state. Throws NSError.
    explicit ServiceRun(const Surroundings& surroundings);
    ~ServiceRun();
    ServiceRun(const ServiceRun&) = delete;
    ServiceRun& operator=(const ServiceRun&) = delete;

    /// Whether the effect is instantiated and connected to the render thread.
    bool isReady() const { return readySession_ != nullptr; }
    /// The service's error when it could not instantiate the effect.
    const std::optional<std::string>& refusal() const { return refusal_; }
    /// Another mapping of the memory that the ready service shares, for readers off the render
    /// thread; null, after a warning, when it cannot be mapped.
    std::shared_ptr<const SharedAudio> sharedAudio() const;
    /// Whether the service can do what the command requests: not while its UI hangs, except to
    /// close that UI.
    bool canTake(const ServiceCommand& command) const;
    /// Sends a command that the service can take, once it is ready.
    void send(ServiceCommand command);
    /// The service is replaced although it has not died, because it cannot take a command.
    void replace();

    /// Waits for events, at most `tick`, and handles them; wakeup: a descriptor that ends the wait
    /// when it is readable. False when the service has ended or has to be killed.
    bool handleEvents(int wakeup);

    /// How a run ended.
    struct End {
        std::string what;         ///< "was killed by signal 11 (Segmentation fault) while playing"
        std::string lastMessage;  ///< The last line of its log; "" for none.
        bool isDeath = true;      ///< Not after replace().
        bool failedToConfine = false;           ///< ServiceProcess::failedToConfine().
        std::deque<ServiceCommand> repeatable;  ///< Unanswered; the next service gets them.
        std::deque<ServiceCommand> lost;        ///< Unanswered; not repeated.
    };
    /// Disconnects the render thread, kills the process and saves the last known state.
    End finish();

  private:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    void sendInstantiate();
    std::uint32_t transmit(bridge::HostMessage& message, int passed = -1);

    // Each is false for a message that the service must not send.
    bool receive();
    bool take(const bridge::ServiceMessage& message);
    bool take(const bridge::Done& done);
    bool take(const bridge::State& state);
    bool take(const bridge::PluginUIOpened& opened);
    bool take(const bridge::PluginUIResizeRequest& request);
    bool take(const bridge::PluginUIClosed& closed);
    bool take(const bridge::PluginUIOutdated& outdated);
    bool take(const bridge::WritePreset& request);
    bool take(const bridge::RemovePreset& request);
    /// False when the service has no reason to request it.
    bool changePresets(const std::function<void()>& change);
    void finishStart(const std::string& error);
    void finishRequest(const ServiceCommand& command, const std::string& error);
    /// Whether the effect has been given a quantum, which observeQuanta() may not have seen yet.
    bool hasRun() const;

    void sendPingWhenDue(Time now);
    /// Says what the audio thread of the service cannot say.
    void reportAudioThread();
    void observeQuanta(Time now);
    void closeHungPluginUI(const std::string& reason);
    // Each is the clause why the service has to be killed, or "".
    std::string overdueAnswer(Time now);
    std::string overdueQuantum(Time now) const;
    std::string excessiveUse(Time now);

    void disconnectRender();
    std::string activity(Time now) const;

    Surroundings surroundings_;
    ServiceProcess process_;
    MessageChannel channel_;
    ServiceLog log_;
    std::unique_ptr<RenderSession> session_;  // Null while the render thread has it.
    RenderSession* readySession_ = nullptr;   // Non-null while the render thread has it.
    std::optional<std::string> refusal_;
    std::string reason_;  // Why the service is killed; "" when it ends by itself.

    std::uint32_t lastNumber_ = 0;
    PendingRequests pending_;
    Time nextPing_;
    Time nextUseCheck_;
    std::uint32_t lastQuantum_ = 0;   // The number of the quantum that was handed over last.
    std::uint32_t lastRendered_ = 0;  // How many of its frames have been rendered.
    Time lastQuantumTime_;
    Time unansweredSince_;  // Since when that quantum has been unanswered.
    bool isCacheTooLarge_ = false;
    bool warnedOfLargeState_ = false;
    bool warnedOfSilence_ = false;
    bool warnedOfScheduling_ = false;
    bool warnedOfPresets_ = false;
    std::uint32_t openedFor_ = 0;  // The last request that PluginUIOpened was sent for.
    bool isPluginUIOpen_ = false;  // According to the service.
    bool isPluginUIHung_ = false;  // The main thread has not answered since the UI was closed.
    bool isReplaced_ = false;
};

}  // namespace orvalo
