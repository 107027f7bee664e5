#pragma once

#include <lv2/ui/ui.h>
#include <suil/suil.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/audio/lv2/LV2EventLink.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/LV2Log.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "platform/plugin-ui/x11/LV2PluginUIFeatures.h"
#include "platform/plugin-ui/x11/X11Geometry.h"

namespace orvalo {

/// The X11 UI of a unit in this process, inside an X window of the host. The user's changes go to
/// the unit at once; update() brings the unit's changes to the UI. Main thread.
class LV2PluginUI {
  public:
    /// How often to call update() while the UI is visible, in Hz.
    static constexpr double kUpdateRate = 60.0;

    /// parent: the X window that gets the UI's window; scaleFactor: of the screen; onResize: the UI
    /// requests a size, also while it is made; presets: for a UI that cannot write files itself.
    /// The data's library must stay loaded for the object's life. Throws NSError when the UI cannot
    /// be made.
    LV2PluginUI(const std::shared_ptr<LV2LocalAudioUnit>& unit, const LV2PluginUIData& data,
                unsigned long parent, double scaleFactor, std::function<void(X11Size)> onResize,
                LV2PresetRequests presets = {});
    /// Cleans the UI up. Its window should be hidden.
    ~LV2PluginUI();
    LV2PluginUI(const LV2PluginUI&) = delete;
    LV2PluginUI& operator=(const LV2PluginUI&) = delete;

    /// The window that the UI says it has; 0 when it does not say.
    unsigned long window() const;

    /// Sends the UI the controls that have changed and the effect's events, and lets the UI work.
    /// False when the UI has closed itself: destroy the object then.
    bool update();

    /// Tells the UI the size of its window, where the UI has the extension for that.
    void setSize(X11Size size);

    /// Whether the UI accesses an instance that has been replaced: recreate the UI then.
    bool isOutdated() const;

  private:
    struct HostFree {
        void operator()(SuilHost* host) const { suil_host_free(host); }
    };
    struct InstanceFree {
        void operator()(SuilInstance* instance) const { suil_instance_free(instance); }
    };
    /// Connects the UI's event link to the unit for the object's life.
    struct Connection {
        Connection(std::shared_ptr<LV2LocalAudioUnit> unit, std::shared_ptr<LV2EventLink> link);
        ~Connection();
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        const std::shared_ptr<LV2LocalAudioUnit> unit;
        const std::shared_ptr<LV2EventLink> link;
        const LV2LocalAudioUnit::InstanceAccess instance;
    };

    // The functions that suil calls for the UI.
    static void write(SuilController controller, std::uint32_t port, std::uint32_t size,
                      std::uint32_t protocol, const void* buffer);
    static std::uint32_t index(SuilController controller, const char* symbol);
    static std::uint32_t subscribe(SuilController controller, std::uint32_t port,
                                   std::uint32_t protocol, const LV2_Feature* const* features);
    static std::uint32_t unsubscribe(SuilController controller, std::uint32_t port,
                                     std::uint32_t protocol, const LV2_Feature* const* features);
    static void touch(SuilController controller, std::uint32_t port, bool isGrabbed);

    const LV2Port* control(std::uint32_t port) const;
    bool writeControl(std::uint32_t port, std::uint32_t size, const void* buffer);
    bool writeEvent(std::uint32_t port, std::uint32_t size, const void* buffer);
    std::uint32_t setSubscribed(std::uint32_t port, std::uint32_t protocol, bool isSubscribed);
    void sendControls();
    void sendEvents();

    const LV2PluginUIData data_;
    LV2Log log_;
    Connection connection_;
    LV2PluginUIOptions options_;
    LV2PluginUIFeatures features_;
    // By port: the value that the UI has, whether it has one, and whether the user holds the
    // control.
    std::vector<float> shown_;
    std::vector<bool> isShown_;
    std::vector<bool> isTouched_;
    bool hasWarned_ = false;
    std::unique_ptr<SuilHost, HostFree> host_;
    std::unique_ptr<SuilInstance, InstanceFree> instance_;
    const LV2UI_Idle_Interface* idle_ = nullptr;
    const LV2UI_Resize* resize_ = nullptr;
};

}  // namespace orvalo
