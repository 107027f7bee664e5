#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/plugin-ui/x11/LV2PluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"
#include "platform/plugin-ui/x11/PluginUITurns.h"
#include "platform/plugin-ui/x11/X11Connection.h"

namespace orvalo {

/// What an effect's UI is opened with: made ready beforehand, and held for the object's
/// life.
struct PluginUIParts {
    /// Throws NSError: the unit has no UI that can be opened here.
    explicit PluginUIParts(const LV2LocalAudioUnit& unit);

    const LV2PluginUIData data;
    const LV2PluginUILibrary library;
    /// The X server that the environment names; null when it is not there.
    const std::shared_ptr<X11Connection> server;
};

/// The effect's UI inside a window of the host's, and its turns. A UI may run the
/// main loop inside of a turn. Main thread.
class ServicePluginUI : public std::enable_shared_from_this<ServicePluginUI> {
  public:
    /// What the UI tells of itself. None may end it.
    struct Events {
        std::function<void(X11Size)> wants;  ///< It asks for an extent, also while it is made.
        std::function<void()> closed;        ///< It has closed itself: it gets no more turns.
        std::function<void()> outdated;  ///< Its instance has been replaced: no more turns either.
        std::function<void()> turned;    ///< It had a turn; comes before these two.
    };

    /// Makes it, hidden. display: the X server's name; window: the host's, in which it belongs.
    /// Throws NSError: no such server or window, or as LV2PluginUI does.
    ServicePluginUI(const std::shared_ptr<LV2LocalAudioUnit>& unit,
                    std::shared_ptr<const PluginUIParts> parts, const std::string& display,
                    unsigned long window, double scaleFactor, Events events);
    /// Cleans it up, after end(). Its window should be shown no more.
    ~ServicePluginUI() = default;
    ServicePluginUI(const ServicePluginUI&) = delete;
    ServicePluginUI& operator=(const ServicePluginUI&) = delete;

    /// As LV2PluginUI::window().
    unsigned long window() const { return pluginUI_->window(); }
    /// No more turns, and nothing more is told. Inside of a turn the object lives until that is
    /// over.
    void end() { turns_ = nullptr; }
    void setVisible(bool isVisible);
    /// The extent of its window, in pixels.
    void setSize(X11Size size);

  private:
    void tick();

    const std::shared_ptr<const PluginUIParts> parts_;
    const Events events_;
    std::unique_ptr<LV2PluginUI> pluginUI_;
    std::unique_ptr<PluginUITurns> turns_;  // Null once it is over.
};

}  // namespace orvalo
