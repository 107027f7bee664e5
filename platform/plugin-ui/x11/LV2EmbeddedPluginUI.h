#pragma once

#include <memory>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/plugin-ui/x11/EmbeddedPluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "platform/plugin-ui/x11/PluginUITurns.h"
#include "platform/plugin-ui/x11/X11Connection.h"
#include "platform/plugin-ui/x11/X11Container.h"

namespace orvalo {

/// An open UI of a unit in this process: the UI, the container around its window, and
/// its turns on the main run loop. A UI that reaches an instance which has been replaced is
/// made anew. One that runs the loop itself, and is closed meanwhile, is cleaned up when its own
/// code has ended, at once otherwise. Main thread.
class LV2EmbeddedPluginUI : public EmbeddedPluginUI {
  public:
    /// Opens it. The data's library must stay loaded for the object's life. Throws NSError.
    LV2EmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                        std::shared_ptr<LV2LocalAudioUnit> unit, LV2PluginUIData data, Place place);
    ~LV2EmbeddedPluginUI() override;

    void place(const X11Rect& area, const X11Rect& visible) override;
    void setVisible(bool isVisible) override;
    const X11SizeRules& rules() const override { return container_->rules(); }

  private:
    void open();
    void enter() const;
    void tick();
    void close(const std::string& reason);

    const std::shared_ptr<X11Connection> connection_;
    const std::shared_ptr<LV2LocalAudioUnit> unit_;
    const LV2PluginUIData data_;
    const Place place_;
    X11Rect area_;
    X11Rect visible_;
    // Shared with the turn that is under way.
    std::shared_ptr<X11Container> container_;
    std::shared_ptr<LV2PluginUI> pluginUI_;
    std::unique_ptr<PluginUITurns> turns_;  // Until it is closed.
    bool isVisible_ = false;
    int turnsWithoutWindow_ = 0;
};

}  // namespace orvalo
