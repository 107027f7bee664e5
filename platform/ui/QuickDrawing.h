#pragma once

#include <glib.h>

namespace orvalo {

/// Has the toolkit draw without OpenGL, unless the environment says otherwise, when it is
/// initialised in the object's life: windows that mostly stand still are on screen sooner so, and
/// out of the way of effects' interfaces that use OpenGL themselves. The choice of the renderer
/// stays in the environment, because the toolkit looks there for every window; what turns OpenGL
/// off, which the programs that this one starts may need, does not. Before there is a second
/// thread.
class QuickDrawing {
  public:
    QuickDrawing() {
        g_setenv("GSK_RENDERER", "cairo", FALSE);
        g_setenv(kDebug, "gl-disable", FALSE);
    }
    ~QuickDrawing() {
        if (isOurs_) {
            g_unsetenv(kDebug);
        }
    }
    QuickDrawing(const QuickDrawing&) = delete;
    QuickDrawing& operator=(const QuickDrawing&) = delete;

  private:
    static constexpr const char* kDebug = "GDK_DEBUG";
    const bool isOurs_ = g_getenv(kDebug) == nullptr;
};

}  // namespace orvalo
