#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// Hears of an effect's UI in another process, and of that process, on the main thread.
class BridgedPluginUIListener {
  public:
    virtual ~BridgedPluginUIListener() = default;

    /// There is a process to open the UI in: now, or again.
    virtual void processReady() = 0;
    /// The process is gone, and its UI and windows with it; another is being made.
    virtual void processGone() = 0;
    /// The process is gone, and no other will come.
    virtual void processGivenUp() = 0;

    /// The UI is there. window: that it says it has; 0 when it says nothing. Only good for
    /// being looked for among the children of the host's own window.
    virtual void pluginUIOpened(std::uint64_t window) = 0;
    /// The UI cannot be opened; error: a line for people.
    virtual void pluginUIRefused(const std::string& error) = 0;
    /// The UI asks for an extent, in pixels, 1 to 16,384 each.
    virtual void pluginUIWants(std::int32_t width, std::int32_t height) = 0;
    /// The UI has closed itself; reason: a clause.
    virtual void pluginUIClosed(const std::string& reason) = 0;
    /// The UI cannot go on: it has to be closed, and opened anew inside another window.
    virtual void pluginUIOutdated() = 0;
};

}  // namespace orvalo
