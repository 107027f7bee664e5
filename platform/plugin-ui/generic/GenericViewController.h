#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2AudioUnit.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/generic/PortRow.h"
#include "platform/plugin-ui/generic/UnitControls.h"
#include "platform/ui/UIViewController.h"

namespace orvalo {

/// A UI for any LV2 unit, made of the toolkit's widgets: a row for each control port in its group,
/// and the presets. Shows the unit's values while it is on screen. Main thread.
class GenericViewController : public UIViewController {
  public:
    /// notice: a sentence above the controls, such as why the plug-in's own UI is not shown; may be
    /// empty.
    static std::shared_ptr<GenericViewController> make(const std::shared_ptr<LV2AudioUnit>& unit,
                                                       const std::string& notice);

    /// For make(), which adds the view.
    GenericViewController(std::shared_ptr<LV2AudioUnit> unit, const std::string& notice);
    ~GenericViewController() override;

  private:
    void addStatus();
    void addPresets();
    void addPorts(const PluginPresentation& presentation);
    GtkWidget* addGroup(const std::string& title);
    void setShown(bool isShown);
    void refresh();

    const std::shared_ptr<LV2AudioUnit> unit_;
    const std::unique_ptr<UnitControls> controls_;
    GtkWidget* const page_;  // The groups, from top to bottom.
    const std::shared_ptr<UIView> scroller_;
    GtkWidget* status_ = nullptr;
    GtkWidget* statusText_ = nullptr;
    GtkWidget* retry_ = nullptr;
    GtkWidget* presets_ = nullptr;  // Null without presets.
    std::vector<std::unique_ptr<PortRow>> rows_;
    GSourcePointer timer_;  // While the view is on screen.
};

}  // namespace orvalo
