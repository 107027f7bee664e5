#pragma once

#include <memory>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/plugin-ui/x11/LV2PluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"
#include "platform/plugin-ui/x11/PluginUITimer.h"
#include "platform/plugin-ui/x11/X11Connection.h"
#include "programs/effect-service/LoadedEffect.h"
#include "programs/effect-service/ServiceConnection.h"

namespace orvalo {

/// The data, library and X server of an effect's UI: loaded before the UI is opened, and held for
/// the object's life.
struct PluginUIParts {
    /// Throws NSError: the unit has no UI that can be opened here.
    explicit PluginUIParts(const LV2LocalAudioUnit& unit);

    const LV2PluginUIData data;
    const LV2PluginUILibrary library;
    /// The X server that the environment names; null when it cannot be reached.
    const std::shared_ptr<X11Connection> server;
};

/// The effect's UI inside a window of the host. Sends the host PluginUIResizeRequest,
/// PluginUIClosed and PluginUIOutdated. The UI's code may run the main loop inside of an update.
/// Main thread.
class ServicePluginUI : public std::enable_shared_from_this<ServicePluginUI> {
  public:
    /// Makes the UI, hidden. effect and host outlive the object. writesPresets: as in Instantiate.
    /// Throws NSError: no such X server or window, or as LV2PluginUI does.
    ServicePluginUI(LoadedEffect& effect, ServiceConnection& host,
                    std::shared_ptr<const PluginUIParts> parts, const bridge::OpenPluginUI& request,
                    bool writesPresets);
    /// Cleans the UI up, after end(). Its window should be hidden.
    ~ServicePluginUI() = default;
    ServicePluginUI(const ServicePluginUI&) = delete;
    ServicePluginUI& operator=(const ServicePluginUI&) = delete;

    /// As LV2PluginUI::window().
    unsigned long window() const { return pluginUI_->window(); }
    /// Stops the updates and the messages. The object lives until an update under way returns.
    void end() { timer_ = nullptr; }
    void setVisible(bool isVisible);
    /// The size of its window, in pixels.
    void setSize(X11Size size);

  private:
    void update();
    LV2PresetRequests presetRequests();

    LoadedEffect& effect_;
    ServiceConnection& host_;
    const std::shared_ptr<const PluginUIParts> parts_;
    std::unique_ptr<LV2PluginUI> pluginUI_;
    std::unique_ptr<PluginUITimer> timer_;  // Null after end().
};

}  // namespace orvalo
