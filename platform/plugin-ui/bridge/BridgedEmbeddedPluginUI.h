#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/x11/EmbeddedPluginUI.h"

namespace orvalo {

/// The embedded UI of a unit in an effect service: the service puts the UI's window into a
/// container of this process. When the service dies, the UI is restarting until the next service
/// has opened it again. Main thread.
class BridgedEmbeddedPluginUI : public EmbeddedPluginUI {
  public:
    /// isFixedSize: as the UI's data say.
    BridgedEmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                            std::shared_ptr<BridgedAudioUnit> unit, bool isFixedSize,
                            Parent parent);
    ~BridgedEmbeddedPluginUI() override;

    float controlValue(std::uint32_t port) const override;
    void setControlValue(std::uint32_t port, float value) override {
        channel().setControl(port, value);
    }

  private:
    void resized(X11Size size) override;
    void lostWindow() override { expectWindow(); }
    void visibilityChanged() override;

    void handle(const ServiceReady& event);
    void handle(const ServiceLost& event);
    void handle(const ServiceGivenUp& event);
    void handle(const PluginUIRefused& event);
    void handle(const bridge::PluginUIOpened& event);
    void handle(const bridge::PluginUIResizeRequest& event);
    void handle(const bridge::PluginUIClosed& event);
    void handle(const bridge::PluginUIOutdated& event);

    PluginUIChannel& channel() const { return unit_->pluginUIChannel(); }
    void open();
    /// Closes the UI in the service.
    void leave();
    void close(const std::string& reason);
    bool isWindowMissing() const;
    void expectWindow();

    const std::shared_ptr<BridgedAudioUnit> unit_;
    std::shared_ptr<const SharedAudio> audio_;  // Null while there is no service.
    GSourcePointer timeout_;                    // Null unless a window is missing.
    bool isOpened_ = false;                     // In the service.
};

}  // namespace orvalo
