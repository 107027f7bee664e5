#pragma once

#include <functional>
#include <string>

#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/plugin-ui/x11/X11Key.h"
#include "platform/plugin-ui/x11/X11SizeRules.h"

namespace orvalo {

/// An effect's UI inside somebody's toplevel window, wherever its code runs. Main thread.
class EmbeddedPluginUI {
  public:
    struct Place {
        unsigned long toplevel;  ///< The X window.
        double scaleFactor;      ///< Of the screen: 1 for plain ones.
        X11Size size;            ///< Of the area that it will be given, in pixels.
        /// Called before the UI's own code runs in this process, which may take what belongs
        /// to the thread, such as the current OpenGL context. May be empty.
        std::function<void()> willEnter;
    };

    EmbeddedPluginUI() = default;
    /// Takes it off the screen, then has it cleaned up.
    virtual ~EmbeddedPluginUI() = default;
    EmbeddedPluginUI(const EmbeddedPluginUI&) = delete;
    EmbeddedPluginUI& operator=(const EmbeddedPluginUI&) = delete;

    /// As X11Container::place().
    virtual void place(const X11Rect& area, const X11Rect& visible) = 0;
    /// At first it is not.
    virtual void setVisible(bool isVisible) = 0;
    virtual const X11SizeRules& rules() const = 0;
    /// Whether it is away now, as onAway has it; it can be from the beginning.
    virtual bool isAway() const { return false; }

    /// What the UI asks for has changed. May be empty.
    std::function<void()> onRules;
    /// The UI has got a key and sent it on, because it means nothing to it. The object may
    /// be destroyed inside. May be empty.
    std::function<void(const X11Key&)> onUnusedKey;
    /// The UI is away for a while, through no wish of anybody's; or, with false, back. May
    /// be empty.
    std::function<void(bool isAway)> onAway;
    /// The UI is closed: by itself, by the loss of its window, or because it could not be
    /// made, or made anew. The reason is a clause without a full stop. Called once, from the run
    /// loop; the object may be destroyed inside. May be empty.
    std::function<void(const std::string& reason)> onClosed;
};

}  // namespace orvalo
