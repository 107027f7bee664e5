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

/// One X11 UI of a unit, made inside a given X window. What the user moves goes to the unit
/// at once; what changes in the unit comes with update(). Main thread.
class LV2PluginUI {
  public:
    /// How often update() is meant to be called while the UI is shown, in Hz.
    static constexpr double kUpdateRate = 60.0;

    /// parent: the X window to be put into; scaleFactor: the screen's, 1 for plain ones; onResize:
    /// what the UI asks for, also while it is made. The data's library must stay loaded for
    /// the object's life. Throws NSError when the UI refuses to be made.
    LV2PluginUI(const std::shared_ptr<LV2LocalAudioUnit>& unit, const LV2PluginUIData& data,
                unsigned long parent, double scaleFactor, std::function<void(X11Size)> onResize);
    /// Cleans the UI up. Its window should be shown no more.
    ~LV2PluginUI();
    LV2PluginUI(const LV2PluginUI&) = delete;
    LV2PluginUI& operator=(const LV2PluginUI&) = delete;

    /// The window that the UI says it has; 0 when it says nothing.
    unsigned long window() const;

    /// One turn: tells the UI which controls have changed and what the effect has sent, and
    /// lets it do its work. False once it has closed itself: it has to go then.
    bool update();

    /// Tells it the extent of its window, if it wants to know by another way than the window.
    void setSize(X11Size size);

    /// Whether the instance that it reaches has been replaced, so that it has to be made anew.
    bool isOutdated() const;

  private:
    struct HostFree {
        void operator()(SuilHost* host) const { suil_host_free(host); }
    };
    struct InstanceFree {
        void operator()(SuilInstance* instance) const { suil_instance_free(instance); }
    };
    /// Connects the link for the object's life.
    struct Connection {
        Connection(std::shared_ptr<LV2LocalAudioUnit> unit, std::shared_ptr<LV2EventLink> link);
        ~Connection();
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        const std::shared_ptr<LV2LocalAudioUnit> unit;
        const std::shared_ptr<LV2EventLink> link;
        const LV2LocalAudioUnit::InstanceAccess instance;
    };

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
    void showControls();
    void showEvents();

    const LV2PluginUIData data_;
    LV2Log log_;
    Connection connection_;
    LV2PluginUIOptions options_;
    LV2PluginUIFeatures features_;
    std::vector<float> shown_;     // What the UI shows, by port.
    std::vector<bool> isKnown_;    // Whether it has been told at all.
    std::vector<bool> isTouched_;  // Whether the user holds it.
    bool hasComplained_ = false;
    std::unique_ptr<SuilHost, HostFree> host_;
    std::unique_ptr<SuilInstance, InstanceFree> instance_;
    const LV2UI_Idle_Interface* idle_ = nullptr;
    const LV2UI_Resize* resize_ = nullptr;
};

}  // namespace orvalo
