#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

class UIClass;
class UIViewController;

/// Creates the widgets of one top-level object of a layout from its text. An error in the text is a
/// fatal error that names the layout. Main thread.
class LayoutBuilder {
  public:
    /// A screen, whose signals become actions of the owner. The owner is not kept alive.
    LayoutBuilder(std::string layout, const std::string& screen, const UIClass& ownerClass,
                  const std::shared_ptr<UIViewController>& owner);
    /// An object without actions.
    LayoutBuilder(std::string layout, const std::string& object);

    /// A new GtkApplicationWindow of the running application, without a layout.
    static GtkWidget* plainWindow();

    /// The widget of that id. A missing id, or an object that is no widget, is a fatal error.
    GtkWidget* widget(const std::string& id) const;
    /// Makes a button perform a segue of the owner.
    void connectSegue(const std::string& button, const std::string& segue) const;

  private:
    void build(const std::string& object);

    std::string layout_;
    GObjectPointer<GtkBuilder> builder_;
    std::weak_ptr<UIViewController> owner_;
};

}  // namespace orvalo
