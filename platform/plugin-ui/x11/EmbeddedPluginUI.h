#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/plugin-ui/x11/X11Connection.h"
#include "platform/plugin-ui/x11/X11Container.h"
#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/plugin-ui/x11/X11Keyboard.h"
#include "platform/plugin-ui/x11/X11SizeRules.h"

namespace orvalo {

/// A plug-in UI inside a toplevel window: the container around the UI's window, and its events. The
/// derived classes differ in the process that runs the UI's code. Main thread.
class EmbeddedPluginUI {
  public:
    /// The toplevel window and what the UI has to know of it.
    struct Parent {
        unsigned long toplevel;  ///< The X window.
        double scaleFactor;      ///< Of the screen, above 0.
        X11Size size;            ///< Of the UI's area at first, in pixels.
        /// Called before the UI's code runs in this process, because that may change what belongs
        /// to the thread, such as the current OpenGL context. May be empty.
        std::function<void()> willEnter;
    };

    /// Hides the UI, then closes it.
    virtual ~EmbeddedPluginUI();
    EmbeddedPluginUI(const EmbeddedPluginUI&) = delete;
    EmbeddedPluginUI& operator=(const EmbeddedPluginUI&) = delete;

    /// As X11Container::place().
    void place(const X11Rect& area, const X11Rect& visible);
    /// False at first.
    void setVisible(bool isVisible);
    /// As X11Keyboard::enter(); false without a UI.
    bool enterByKey(bool atEnd) {
        return container_ != nullptr && container_->keyboard().enter(atEnd);
    }
    /// As X11Keyboard::keepFocus(); false without a UI.
    bool keepFocus(unsigned long time) {
        return container_ != nullptr && container_->keyboard().keepFocus(time);
    }
    /// Returns the keyboard focus to where it was before the UI got it.
    void restoreFocus() {
        if (container_ != nullptr) {
            container_->keyboard().restoreFocus();
        }
    }
    /// The sizes that the UI can be shown at.
    const X11SizeRules& rules() const;
    /// Whether the effect service is restarting; until it has restarted there is no UI.
    bool isRestarting() const { return isRestarting_; }

    /// The value of the control port of that index; NaN while unknown.
    virtual float controlValue(std::uint32_t port) const = 0;
    /// Sets a control input, which the UI then shows.
    virtual void setControlValue(std::uint32_t port, float value) = 0;

    /// rules() or isRestarting() has changed. May be empty.
    std::function<void()> onChange;
    /// The UI got a key, does not use it, and sent it to the host. The object may be destroyed
    /// inside. May be empty.
    std::function<void(const X11Key&)> onUnusedKey;
    /// The UI has closed: by itself, because its window is gone, or because it could not be
    /// restored. reason: a clause without a full stop. Called once, from the run loop; the object
    /// may be destroyed inside. May be empty.
    std::function<void(const std::string& reason)> onClosed;
    /// The UI could not be made. line: a sentence that names the UI. As onClosed, which then is not
    /// called.
    std::function<void(const std::string& line)> onRefused;

  protected:
    /// isFixedSize: whether the UI's data say so.
    EmbeddedPluginUI(std::shared_ptr<X11Connection> connection, Parent parent, bool isFixedSize);

    const Parent& parent() const { return parent_; }
    /// The name of the X server.
    std::string display() const;
    bool isVisible() const { return isVisible_; }
    /// Null until makeContainer() and after dropContainer().
    const std::shared_ptr<X11Container>& container() const { return container_; }

    /// Replaces the container by a new one for a new UI.
    void makeContainer();
    void dropContainer();
    void setRestarting(bool isRestarting);
    void reportChange() const;
    /// Calls onClosed, once.
    void reportClosed(const std::string& reason);
    /// Calls onRefused, once.
    void reportRefused(const std::string& line);

    /// The UI's window has a new size.
    virtual void resized(X11Size size) = 0;
    /// The UI's window, or the container with it, is gone.
    virtual void lostWindow() = 0;
    virtual void visibilityChanged() = 0;

  private:
    const std::shared_ptr<X11Connection> connection_;
    const Parent parent_;
    const bool isFixedSize_;
    X11Rect area_;
    X11Rect visiblePart_;
    bool isVisible_ = false;
    bool isRestarting_ = false;
    std::shared_ptr<X11Container> container_;
};

}  // namespace orvalo
