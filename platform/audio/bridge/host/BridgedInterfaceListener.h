#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// Hears of an effect's interface in another process, and of that process, on the main thread.
class BridgedInterfaceListener {
  public:
    virtual ~BridgedInterfaceListener() = default;

    /// There is a process to open the interface in: now, or again.
    virtual void processReady() = 0;
    /// The process is gone, and its interface and windows with it; another is being made.
    virtual void processGone() = 0;
    /// The process is gone, and no other will come.
    virtual void processGivenUp() = 0;

    /// The interface is there. window: that it says it has; 0 when it says nothing. Only good for
    /// being looked for among the children of the host's own window.
    virtual void interfaceOpened(std::uint64_t window) = 0;
    /// The interface cannot be opened; error: a line for people.
    virtual void interfaceRefused(const std::string& error) = 0;
    /// The interface asks for an extent, in pixels, 1 to 16,384 each.
    virtual void interfaceWants(std::int32_t width, std::int32_t height) = 0;
    /// The interface has closed itself; reason: a clause.
    virtual void interfaceClosed(const std::string& reason) = 0;
    /// The interface cannot go on: it has to be closed, and opened anew inside another window.
    virtual void interfaceOutdated() = 0;
};

}  // namespace orvalo
