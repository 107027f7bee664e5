#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/CGRect.h"
#include "platform/ui/NSLayoutConstraint.h"
#include "platform/ui/UIResponder.h"

using GtkWidget = struct _GtkWidget;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

/// A rectangle on screen: one widget of the toolkit, from a layout or made by code. All operations
/// on the main thread; elsewhere a fatal error that names the operation.
class UIView : public UIResponder {
  public:
    /// An empty view of size zero that can hold subviews.
    UIView();
    /// A view over an existing widget. Keeps the widget alive.
    explicit UIView(GtkWidget* widget);
    ~UIView() override;

    /// The existing view of a widget, or a new one of the class that setClass() registered. The
    /// superview keeps a new one alive.
    static std::shared_ptr<UIView> of(GtkWidget* widget);
    /// Registers how of() creates the views of widgets of a GType and its derived types. The most
    /// derived type counts.
    static void setClass(std::size_t widgetType,
                         std::function<std::shared_ptr<UIView>(GtkWidget*)> make);
    /// Registers a class that is loaded late. provide: called once before the first widget of the
    /// class of that name, such as "GtkLabel"; it registers the GType and calls setClass().
    static void setLateClass(const std::string& widgetClass, std::function<void()> provide);
    /// Calls the provide function of a late class that was not called yet.
    static void provideClass(const std::string& widgetClass);

    /// The widget. Valid until the view is destroyed.
    GtkWidget* widget() const { return widget_; }

    /// Whether the view and its subviews are hidden. A hidden view receives no shortcuts.
    bool isHidden() const;
    void setHidden(bool hidden);

    /// The rectangle in the superview's coordinates, in points. With
    /// translatesAutoresizingMaskIntoConstraints it is the rectangle of setFrame(), which may be
    /// negative or larger than the superview, which clips it. Otherwise it is the rectangle of the
    /// last layout, and setFrame() does nothing.
    CGRect frame() const;
    void setFrame(const CGRect& frame);
    /// The rectangle in the view's own coordinates: its origin is (0, 0).
    CGRect bounds() const;

    /// The closest view around this one; absent when there is none.
    std::shared_ptr<UIView> superview() const;
    /// The direct subviews, the topmost last.
    const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
    /// Adds a view on top, after removing it from its current superview. A fatal error on a view
    /// over a control, which cannot hold subviews.
    void addSubview(const std::shared_ptr<UIView>& view);
    /// Removes the view and its constraints from its superview.
    void removeFromSuperview();
    /// Redraws the view in the next frame.
    void setNeedsDisplay();

    /// Whether setFrame() places the view; initially true. Set it to false for views that
    /// constraints place.
    bool translatesAutoresizingMaskIntoConstraints() const { return translates_; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);

    NSLayoutAnchor topAnchor();
    NSLayoutAnchor leadingAnchor();
    NSLayoutAnchor bottomAnchor();
    NSLayoutAnchor trailingAnchor();
    /// The active constraints between this view and its subviews, in the order of activation.
    const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints() const {
        return constraints_;
    }

    std::shared_ptr<UIResponder> next() const override;

  private:
    friend class NSLayoutConstraint;
    friend class UIViewController;

    void drop(const UIView& subview);

    GtkWidget* widget_;
    std::vector<std::shared_ptr<UIView>> subviews_;
    std::vector<std::shared_ptr<NSLayoutConstraint>> constraints_;
    std::optional<CGRect> frame_;  // From setFrame().
    bool translates_ = true;
    std::weak_ptr<UIResponder> controller_;  // The controller with this root view.
};

}  // namespace orvalo
