#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/audio/interface/InterfaceTurns.h"
#include "platform/audio/interface/LV2Interface.h"
#include "platform/audio/interface/LV2InterfaceLibrary.h"
#include "platform/audio/interface/X11Connection.h"

namespace orvalo {

/// What an effect's interface is opened with: made ready beforehand, and held for the object's
/// life.
struct InterfaceParts {
    /// Throws NSError: the unit has no interface that can be opened here.
    explicit InterfaceParts(const LV2LocalAudioUnit& unit);

    const LV2InterfaceData data;
    const LV2InterfaceLibrary library;
    /// The X server that the environment names; null when it is not there.
    const std::shared_ptr<X11Connection> server;
};

/// The effect's interface inside a window of the host's, and its turns. An interface may run the
/// main loop inside of a turn. Main thread.
class ServiceInterface : public std::enable_shared_from_this<ServiceInterface> {
  public:
    /// What the interface tells of itself. None may end it.
    struct Events {
        std::function<void(X11Size)> wants;  ///< It asks for an extent, also while it is made.
        std::function<void()> closed;        ///< It has closed itself: it gets no more turns.
        std::function<void()> outdated;  ///< Its instance has been replaced: no more turns either.
        std::function<void()> turned;    ///< It had a turn; comes before these two.
    };

    /// Makes it, hidden. display: the X server's name; window: the host's, in which it belongs.
    /// Throws NSError: no such server or window, or as LV2Interface does.
    ServiceInterface(const std::shared_ptr<LV2LocalAudioUnit>& unit,
                     std::shared_ptr<const InterfaceParts> parts, const std::string& display,
                     unsigned long window, double scaleFactor, Events events);
    /// Cleans it up, after end(). Its window should be shown no more.
    ~ServiceInterface() = default;
    ServiceInterface(const ServiceInterface&) = delete;
    ServiceInterface& operator=(const ServiceInterface&) = delete;

    /// As LV2Interface::window().
    unsigned long window() const { return interface_->window(); }
    /// No more turns, and nothing more is told. Inside of a turn the object lives until that is
    /// over.
    void end() { turns_ = nullptr; }
    void setVisible(bool isVisible);
    /// The extent of its window, in pixels.
    void setSize(X11Size size);

  private:
    void tick();

    const std::shared_ptr<const InterfaceParts> parts_;
    const Events events_;
    std::unique_ptr<LV2Interface> interface_;
    std::unique_ptr<InterfaceTurns> turns_;  // Null once it is over.
};

}  // namespace orvalo
