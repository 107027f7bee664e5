#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>

#include "platform/audio/bridge/host/BridgedPluginUIListener.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// One call of a BridgedPluginUIListener.
struct PluginUIEvent {
    enum class Kind { ready, lost, givenUp, opened, refused, wants, closed, outdated };

    Kind kind = Kind::ready;
    std::uint32_t process = 0;  ///< Of ready: its number, from 1.
    std::uint64_t window = 0;   ///< Of opened.
    std::int32_t width = 0;     ///< Of wants, as is height.
    std::int32_t height = 0;
    std::string text = {};  ///< Of refused and closed.
};

/// What is on its way to a listener on the main thread. A process that says too much loses it: of
/// wishes that wait behind each other the last one holds, and there is an end to what waits. Any
/// thread.
class PluginUIMailbox : public NSObject {
  public:
    /// Tells it before it returns, on the main thread, that there is a process, if there is one.
    void setListener(const std::weak_ptr<BridgedPluginUIListener>& listener);
    void post(PluginUIEvent event);
    /// The UI in the process of that number is told to close: what it says until
    /// endClosing() is of no interest any more.
    void beginClosing(std::uint32_t process);
    void endClosing(std::uint32_t process);
    /// The number of the process that the listener has heard is ready; 0 while it has heard of
    /// none.
    std::uint32_t heardProcess() const { return heardProcess_.load(std::memory_order_relaxed); }

  private:
    void schedule();
    void deliver();
    std::size_t beginDelivery();
    bool take(PluginUIEvent& event, std::shared_ptr<BridgedPluginUIListener>& listener);
    void endDelivery();

    std::mutex mutex_;
    std::weak_ptr<BridgedPluginUIListener> listener_;
    std::deque<PluginUIEvent> waiting_;
    bool isScheduled_ = false;
    std::uint32_t closings_ = 0;  // Not yet ended, in the standing process.
    PluginUIEvent standing_{.kind = PluginUIEvent::Kind::lost};  // Of the process, last.
    std::atomic<std::uint32_t> heardProcess_{0};
};

}  // namespace orvalo
