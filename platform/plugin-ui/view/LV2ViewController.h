#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/plugin-ui/view/AUViewController.h"
#include "platform/plugin-ui/view/X11ContainerView.h"
#include "platform/plugin-ui/x11/EmbeddedPluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "platform/plugin-ui/x11/X11Connection.h"

namespace orvalo {

/// The X11 UI of an LV2 unit, whose code runs in this process or in the unit's own. It is
/// opened, hidden, once its view is in a window, so that it is there when the view comes on screen,
/// and from then on lives as long as the view's window; one that has closed, or could not be
/// opened, says so in its place and is tried again when the view comes on screen anew; one whose
/// process is being made again says so meanwhile. Main thread.
class LV2ViewController : public AUViewController {
  public:
    /// From now on requestViewController() of an LV2 unit gives one; absent, with one line on
    /// standard error that names the plug-in and says why, when there is no UI that can be
    /// embedded here. Once, at the program's start, by a program whose toolkit uses X11.
    static void enable();

    struct Opener {
        /// Opens the UI in a place. Throws NSError.
        std::function<std::unique_ptr<EmbeddedPluginUI>(const std::shared_ptr<X11Connection>&,
                                                        const EmbeddedPluginUI::Place&)>
            open;
        /// The main loop's, for one that nobody waits for yet.
        int priority;
    };

    /// With its view.
    static std::shared_ptr<LV2ViewController> make(const LV2PluginUIData& data, Opener opener);

    /// For make().
    LV2ViewController(LV2PluginUIData data, Opener opener);
    ~LV2ViewController() override;

  private:
    void place(const X11ContainerView::Place& place);
    void open(const X11ContainerView::Place& place);
    void sayWhetherAway(bool isAway);
    void close();
    void closed(const std::string& reason);
    void takeRules();

    const LV2PluginUIData data_;
    const Opener opener_;
    std::shared_ptr<X11ContainerView> container_;
    std::unique_ptr<EmbeddedPluginUI> pluginUI_;
    unsigned long toplevel_ = 0;  // That the UI is open in.
    int scaleFactor_ = 1;
    bool hasFailed_ = false;  // Since the view came on screen.
};

}  // namespace orvalo
