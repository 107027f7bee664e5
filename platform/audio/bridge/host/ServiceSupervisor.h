#pragma once

#include <atomic>
#include <deque>
#include <future>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/audio/bridge/host/RestartPolicy.h"
#include "platform/audio/bridge/host/ServiceRun.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

/// Keeps a process with one effect alive: starts it, starts it again with the effect's last known
/// state when it dies, hangs or takes too much, and gives up when it does so too often. A thread of
/// its own does all this.
class ServiceSupervisor {
  public:
    /// last: what the effect is made with at first. render and pluginUI outlive the supervisor.
    ServiceSupervisor(ServiceOrder order, const BridgeLimits& limits, BridgedRender& render,
                      PluginUIChannel& pluginUI, LastState last = {});
    /// Ends the process, at once.
    ~ServiceSupervisor();
    ServiceSupervisor(const ServiceSupervisor&) = delete;
    ServiceSupervisor& operator=(const ServiceSupervisor&) = delete;

    /// Starts the process, and returns once the effect is there. Throws NSError: what the process
    /// says is wrong with it, or how it died too often before it was there. Once.
    void start();

    /// Says something to the process and waits for the answer; while another process is being made,
    /// for that one's. Any thread, after start().
    ServiceAnswer perform(bridge::HostMessage message);
    /// Says something to a process and returns at once. Any thread, after start().
    void post(ServiceCommand command);

    /// Whether the effect has died too often. Any thread.
    bool hasGivenUp() const { return hasGivenUp_.load(std::memory_order_acquire); }

  private:
    void supervise();
    /// One process. False when no other is to follow.
    bool runOnce();
    void becomeReady();
    bool takeEnd(ServiceRun::End end, const std::optional<std::string>& refusal);
    bool takeRefusal(const std::string& why);
    bool takeDeath(const std::string& what, const std::string& lastMessage);
    void giveUp();
    void sendCommands(ServiceRun& run);
    static void remember(const std::deque<ServiceCommand>& commands);
    std::deque<ServiceCommand> takeCommands();
    void wake() const;
    void fallAsleep() const;
    void rest() const;
    bool isStopping() const { return isStopping_.load(std::memory_order_acquire); }

    const ServiceOrder order_;
    const BridgeLimits limits_;
    BridgedRender& render_;
    PluginUIChannel& pluginUI_;

    FileDescriptor wakeup_;
    std::atomic<bool> isStopping_{false};
    std::atomic<bool> hasGivenUp_{false};
    std::mutex mutex_;  // Guards the commands.
    std::deque<ServiceCommand> commands_;

    // The supervisor's thread's.
    LastState last_;
    RestartPolicy policy_;
    std::uint32_t process_ = 0;  // The number of the process, from 1.
    bool wasReady_ = false;      // The effect has been there.
    std::optional<std::promise<std::optional<NSError>>> started_;

    std::thread thread_;
};

}  // namespace orvalo
