#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/x11/EmbeddedPluginUI.h"
#include "platform/plugin-ui/x11/X11Connection.h"
#include "platform/plugin-ui/x11/X11Container.h"

namespace orvalo {

/// The UI of a unit in a process of its own, which puts its window into a container of this
/// one. When the process ends the UI is away, until it has been opened in the next one.
/// Main thread.
class BridgedEmbeddedPluginUI : public EmbeddedPluginUI {
  public:
    /// isFixedSize: as the UI's data say.
    BridgedEmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                            std::shared_ptr<BridgedAudioUnit> unit, bool isFixedSize, Place place);
    ~BridgedEmbeddedPluginUI() override;

    void place(const X11Rect& area, const X11Rect& visible) override;
    void setVisible(bool isVisible) override;
    const X11SizeRules& rules() const override;
    bool isAway() const override { return isAway_; }

  private:
    class Listener;

    BridgedPluginUIChannel& channel() const { return unit_->pluginUIChannel(); }
    void open();
    void opened(std::uint64_t window);
    void processGone();
    void leave();
    void close(const std::string& reason);
    void expectWindow();
    void setPatience(unsigned milliseconds);

    const std::shared_ptr<X11Connection> connection_;
    const std::shared_ptr<BridgedAudioUnit> unit_;
    const bool isFixedSize_;
    const Place place_;
    std::shared_ptr<Listener> listener_;
    X11Rect area_;
    X11Rect visible_;
    std::unique_ptr<X11Container> container_;  // Null while there is no process.
    GSourcePointer patience_;
    bool isVisible_ = false;
    bool isAway_ = false;
    bool isOpened_ = false;
};

}  // namespace orvalo
