#pragma once

#include <memory>
#include <string>

#include "platform/audio/interface/EmbeddedInterface.h"
#include "platform/audio/interface/InterfaceTurns.h"
#include "platform/audio/interface/LV2Interface.h"
#include "platform/audio/interface/LV2InterfaceData.h"
#include "platform/audio/interface/X11Connection.h"
#include "platform/audio/interface/X11Container.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"

namespace orvalo {

/// An open interface of a unit in this process: the interface, the container around its window, and
/// its turns on the main run loop. An interface that reaches an instance which has been replaced is
/// made anew. One that runs the loop itself, and is closed meanwhile, is cleaned up when its own
/// code has ended, at once otherwise. Main thread.
class LV2EmbeddedInterface : public EmbeddedInterface {
  public:
    /// Opens it. The data's library must stay loaded for the object's life. Throws NSError.
    LV2EmbeddedInterface(std::shared_ptr<X11Connection> connection,
                         std::shared_ptr<LV2LocalAudioUnit> unit, LV2InterfaceData data,
                         Place place);
    ~LV2EmbeddedInterface() override;

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
    const LV2InterfaceData data_;
    const Place place_;
    X11Rect area_;
    X11Rect visible_;
    // Shared with the turn that is under way.
    std::shared_ptr<X11Container> container_;
    std::shared_ptr<LV2Interface> interface_;
    std::unique_ptr<InterfaceTurns> turns_;  // Until it is closed.
    bool isVisible_ = false;
    int turnsWithoutWindow_ = 0;
};

}  // namespace orvalo
