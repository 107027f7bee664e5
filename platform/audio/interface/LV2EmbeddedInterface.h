#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/audio/interface/LV2Interface.h"
#include "platform/audio/interface/LV2InterfaceData.h"
#include "platform/audio/interface/X11Connection.h"
#include "platform/audio/interface/X11Container.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// An open interface inside somebody's toplevel window: the interface, the container around its
/// window, and the timer that keeps it going on the main run loop, slowly while it is hidden. An
/// interface that reaches an instance which has been replaced is made anew. One that runs the loop
/// itself, and is closed meanwhile, is cleaned up when its own code has ended. Main thread.
class LV2EmbeddedInterface {
  public:
    struct Place {
        unsigned long toplevel;  ///< The X window.
        double scaleFactor;      ///< Of the screen: 1 for plain ones.
        X11Size size;            ///< Of the area that it will be given, in pixels.
        /// Called before the interface's own code runs, which may take what belongs to the thread,
        /// such as the current OpenGL context. May be empty.
        std::function<void()> willEnter;
    };

    /// Opens it, not visible yet. The data's library must stay loaded for the object's life. Throws
    /// NSError.
    LV2EmbeddedInterface(std::shared_ptr<X11Connection> connection,
                         std::shared_ptr<LV2LocalAudioUnit> unit, LV2InterfaceData data,
                         const Place& place);
    /// Takes it off the screen, then cleans it up, at once but for what is said above.
    ~LV2EmbeddedInterface();
    LV2EmbeddedInterface(const LV2EmbeddedInterface&) = delete;
    LV2EmbeddedInterface& operator=(const LV2EmbeddedInterface&) = delete;

    /// As X11Container::place().
    void place(const X11Rect& area, const X11Rect& visible);
    void setVisible(bool isVisible);
    const X11SizeRules& rules() const { return container_->rules(); }

    /// What the interface asks for has changed. May be empty.
    std::function<void()> onRules;
    /// The interface has got a key and sent it on, because it means nothing to it. The object may
    /// be destroyed inside. May be empty.
    std::function<void(const X11Key&)> onUnusedKey;
    /// The interface is closed: by itself, by the loss of its window, or because it could not be
    /// made anew. The reason is a clause without a full stop. Called once, from the run loop; the
    /// object may be destroyed inside. May be empty.
    std::function<void(const std::string& reason)> onClosed;

  private:
    void open();
    void enter() const;
    void setTimer(unsigned period);  // In ms.
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
    GSourcePointer timer_;
    bool isVisible_ = false;
    int turnsWithoutWindow_ = 0;
    int firstTurns_ = 0;  // How many of them are left.
};

}  // namespace orvalo
