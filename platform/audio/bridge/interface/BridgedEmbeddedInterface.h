#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/interface/EmbeddedInterface.h"
#include "platform/audio/interface/X11Connection.h"
#include "platform/audio/interface/X11Container.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// The interface of a unit in a process of its own, which puts its window into a container of this
/// one. When the process ends the interface is away, until it has been opened in the next one.
/// Main thread.
class BridgedEmbeddedInterface : public EmbeddedInterface {
  public:
    /// isFixedSize: as the interface's data say.
    BridgedEmbeddedInterface(std::shared_ptr<X11Connection> connection,
                             std::shared_ptr<BridgedAudioUnit> unit, bool isFixedSize, Place place);
    ~BridgedEmbeddedInterface() override;

    void place(const X11Rect& area, const X11Rect& visible) override;
    void setVisible(bool isVisible) override;
    const X11SizeRules& rules() const override;
    bool isAway() const override { return isAway_; }

  private:
    class Listener;

    BridgedInterfaceChannel& channel() const { return unit_->interfaceChannel(); }
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
