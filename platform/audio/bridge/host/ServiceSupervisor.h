#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/audio/bridge/host/ServiceRun.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

/// Decides whether a service that died is restarted. One thread.
class RestartPolicy {
  public:
    using Clock = std::chrono::steady_clock;

    RestartPolicy(unsigned deaths, Clock::duration window) : deaths_(deaths), window_(window) {}

    /// Counts a death. False when it completes `deaths` deaths in less than the window.
    bool mayRestartAfterDeath(Clock::time_point now) {
        while (!recent_.empty() && now - recent_.front() >= window_) {
            recent_.pop_front();
        }
        recent_.push_back(now);
        return recent_.size() < deaths_;
    }
    void forgetDeaths() { recent_.clear(); }

  private:
    const unsigned deaths_;
    const Clock::duration window_;
    std::deque<Clock::time_point> recent_;
};

/// Runs one effect's services, one after the other, on its own thread. A service that dies, hangs
/// or exceeds its limits is replaced by one with the effect's last known state. When it has died
/// too often, the effect is given up until restart().
class ServiceSupervisor {
  public:
    /// last: the state of the first service. render and pluginUI outlive the supervisor.
    ServiceSupervisor(ServiceOrder order, const BridgeLimits& limits, BridgedRender& render,
                      PluginUIChannel& pluginUI, LastState last = {});
    /// Kills the service.
    ~ServiceSupervisor();
    ServiceSupervisor(const ServiceSupervisor&) = delete;
    ServiceSupervisor& operator=(const ServiceSupervisor&) = delete;

    /// Starts the first service; returns when the effect is instantiated there. Throws NSError when
    /// the service refuses the effect or dies too often before. Once.
    void start();

    /// Sends a message and waits for the answer, across a restart where one is under way. Any
    /// thread, after start().
    ServiceAnswer perform(bridge::HostMessage message);
    /// Sends a command without waiting. Any thread, after start().
    void post(ServiceCommand command);

    /// The last known state. Only inside a command's completion.
    const LastState& lastState() const { return last_; }

    /// Whether the effect is given up. Any thread.
    bool hasGivenUp() const { return hasGivenUp_.load(std::memory_order_acquire); }
    /// Starts services again when the effect is given up. Any thread, after start().
    void restart();

  private:
    void supervise();
    bool awaitRestart();
    // Each is false when no other service follows.
    bool runService();
    bool handleFailedStart(const std::string& error);
    bool handleEnd(const ServiceRun::End& end, const std::optional<std::string>& refusal);
    /// isDeath: whether the end counts.
    bool handleDeath(const std::string& what, const std::string& lastMessage, bool isDeath = true);

    bool serve(ServiceRun& run);
    void announceReady(const ServiceRun& run);
    void failStart(const std::string& error);
    void giveUp();
    /// False when the service has to be replaced before it can take the rest of the commands.
    bool sendCommands(ServiceRun& run);
    void refuseCommands();
    std::deque<ServiceCommand> takeCommands();
    std::string deathsText() const;

    void wake() const;
    /// Before looking for the reason of a wake-up, never between that and waiting: a wake-up that
    /// came in between would be lost.
    void drainWakeups() const;
    void waitBeforeRetry() const;
    bool isStopping() const { return isStopping_.load(std::memory_order_acquire); }

    const ServiceOrder order_;
    const BridgeLimits limits_;
    BridgedRender& render_;
    PluginUIChannel& pluginUI_;

    FileDescriptor wakeup_;
    std::atomic<bool> isStopping_{false};
    std::atomic<bool> hasGivenUp_{false};
    std::mutex mutex_;  // Guards commands_ and changes of hasGivenUp_.
    std::deque<ServiceCommand> commands_;

    // Used by the supervisor's thread alone.
    LastState last_;
    RestartPolicy policy_;
    std::uint32_t process_ = 0;  // The number of the current service, from 1.
    bool wasReady_ = false;      // Whether any service has instantiated the effect.
    std::optional<std::promise<std::optional<NSError>>> started_;  // Until start() has its result.

    std::thread thread_;
};

}  // namespace orvalo
