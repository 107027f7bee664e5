#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/generic/AccessibleControls.h"
#include "platform/plugin-ui/view/AUViewController.h"
#include "platform/plugin-ui/view/X11ContainerView.h"
#include "platform/plugin-ui/x11/EmbeddedPluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "platform/plugin-ui/x11/X11Connection.h"

namespace orvalo {

/// The X11 UI of an LV2 unit, whose code runs in this process or in an effect service. The UI is
/// opened, hidden, when its view gets a toplevel window, and closed when the view leaves that
/// window. Its control inputs are beside it as AccessibleControls. Where the UI cannot be opened,
/// has closed or is restarting, the view says so; a UI that failed or closed is opened again when
/// the view next appears on screen. Main thread.
class LV2ViewController : public AUViewController {
  public:
    /// From now on requestViewController() of an LV2 unit returns such a controller; when the UI
    /// cannot be embedded a GenericViewController, with a line on standard error that names the
    /// plug-in and the reason. Call once, at the program's start.
    static void enable();

    /// Opens the UI in a toplevel window. Throws NSError.
    using Open = std::function<std::unique_ptr<EmbeddedPluginUI>(
        const std::shared_ptr<X11Connection>&, const EmbeddedPluginUI::Parent&)>;

    /// Reads what the UI's controls are, for assistive technology.
    using ReadControls = std::function<PluginPresentation()>;

    /// openPriority: in the main loop, of opening the UI before its view is on screen.
    static std::shared_ptr<LV2ViewController> make(const LV2PluginUIData& data, Open open,
                                                   ReadControls readControls, int openPriority);

    /// For make(), which adds the view.
    LV2ViewController(LV2PluginUIData data, Open openPluginUI, ReadControls readControls,
                      int openPriority);
    ~LV2ViewController() override;

  private:
    void place(const X11ContainerView::Place& place);
    void open(const X11ContainerView::Place& place);
    void showCondition();
    void close();
    void closed(const std::string& reason);
    void refused(const std::string& line);
    void fail(const std::string& message);
    void watchControls(bool isShown);
    void refreshControls();

    const LV2PluginUIData data_;
    const Open open_;
    const std::shared_ptr<X11ContainerView> container_;
    std::unique_ptr<EmbeddedPluginUI> pluginUI_;
    unsigned long toplevel_ = 0;  // Of the open UI, as is scaleFactor_.
    int scaleFactor_ = 1;
    const ReadControls readControls_;
    std::unique_ptr<AccessibleControls> controls_;  // Null until the UI has been shown.
    GSourcePointer controlsTimer_;                  // While the UI is on screen.
    bool hasFailed_ = false;                        // Since the view came on screen.
};

}  // namespace orvalo
