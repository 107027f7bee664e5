#pragma once

#include <gtk/gtk.h>

#include <memory>

namespace orvalo {

class UIClass;
class UIViewController;

/// What a GtkBuilder asks for the handlers of a screen's signals: the actions of its owner, which
/// is not kept alive. A handler that the class does not have does nothing. The caller owns the
/// result.
GtkBuilderScope* newLayoutScope(const UIClass& ownerClass,
                                const std::shared_ptr<UIViewController>& owner);

}  // namespace orvalo
