#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

class UIClass;
class UIViewController;

/// Makes the widgets of one object at the top of a layout from its text. Main thread.
class LayoutBuilder {
  public:
    /// A screen: its signals become actions of the owner, which is not kept alive. What the toolkit
    /// cannot make is a fatal error that names the layout.
    LayoutBuilder(std::string layout, const std::string& screen, const UIClass& ownerClass,
                  const std::shared_ptr<UIViewController>& owner);
    /// An object without actions.
    LayoutBuilder(std::string layout, const std::string& object);

    static GtkWidget* plainWindow();

    /// The widget of that id. An id of nothing, or of no widget, is a fatal error.
    GtkWidget* widget(const std::string& id) const;
    /// Has a button perform a segue of the owner.
    void takeSegue(const std::string& button, const std::string& segue) const;

  private:
    void build(const std::string& object);

    std::string layout_;
    std::unique_ptr<GtkBuilder, Release<g_object_unref>> builder_;
    std::weak_ptr<UIViewController> owner_;
};

}  // namespace orvalo
