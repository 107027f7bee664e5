#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/plugin-ui/x11/EmbeddedPluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "platform/plugin-ui/x11/PluginUITimer.h"

namespace orvalo {

/// The embedded UI of a unit in this process. A UI that accesses the plug-in's instance is
/// recreated when the instance is replaced. The object may be destroyed while the UI's own code
/// runs the main loop: the UI is cleaned up when that code returns, at once otherwise. Main thread.
class LV2EmbeddedPluginUI : public EmbeddedPluginUI {
  public:
    /// Opens the UI. The data's library must stay loaded for the object's life. Throws NSError.
    LV2EmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                        std::shared_ptr<LV2LocalAudioUnit> unit, LV2PluginUIData data,
                        Parent parent);
    ~LV2EmbeddedPluginUI() override;

    float controlValue(std::uint32_t port) const override { return unit_->controls().value(port); }
    void setControlValue(std::uint32_t port, float value) override {
        unit_->controls().setValue(port, value);
    }

  private:
    void resized(X11Size size) override;
    void lostWindow() override { close("it has lost its window"); }
    void visibilityChanged() override;

    void open();
    void reopen();
    void enter() const;
    void update();
    void end();
    void close(const std::string& reason);

    const std::shared_ptr<LV2LocalAudioUnit> unit_;
    const LV2PluginUIData data_;
    std::shared_ptr<LV2PluginUI> pluginUI_;  // Shared with the update under way.
    std::unique_ptr<PluginUITimer> timer_;   // Null once closed.
    int updatesWithoutWindow_ = 0;
};

}  // namespace orvalo
