#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/generic/PortPresentation.h"
#include "platform/plugin-ui/generic/PortRow.h"

namespace orvalo {

/// The control inputs of a plug-in as widgets for assistive technology, which sees nothing inside
/// of an X11 UI. They are transparent and take neither the pointer nor the keyboard. Main thread.
class AccessibleControls {
  public:
    /// set: gets each value that is set by assistive technology.
    AccessibleControls(const PluginPresentation& presentation,
                       const std::function<void(std::uint32_t port, float value)>& set);

    GtkWidget* widget() const { return widget_.get(); }
    /// Shows the plug-in's values. value: of a port; NaN while unknown.
    void refresh(const std::function<float(std::uint32_t port)>& value);

  private:
    const GObjectPointer<GtkWidget> widget_;
    std::vector<std::unique_ptr<PortRow>> controls_;
};

}  // namespace orvalo
