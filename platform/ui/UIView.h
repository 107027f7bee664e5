#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/CGRect.h"
#include "platform/ui/NSLayoutAnchor.h"
#include "platform/ui/UIResponder.h"

using GtkWidget = struct _GtkWidget;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

class NSLayoutConstraint;

/// A rectangle on screen: one widget of the toolkit. Made by the layout, which wraps its widgets,
/// or by code. All operations on the main thread; elsewhere a fatal error that names the operation.
class UIView : public UIResponder {
  public:
    /// An empty view, of no extent, that can hold subviews.
    UIView();
    /// A view over an existing widget, which it keeps alive.
    explicit UIView(GtkWidget* widget);
    ~UIView() override;

    /// The view of a widget: the one that it has, else a new one of the class that stands for
    /// widgets of its kind, held by the view around it.
    static std::shared_ptr<UIView> of(GtkWidget* widget);
    /// Has of() make the views of widgets of a type (a GType) and of types derived from it. The
    /// closest type counts.
    static void setClass(std::size_t widgetType,
                         std::function<std::shared_ptr<UIView>(GtkWidget*)> make);
    /// Has provide called, once, before the first widget of a class is made that layouts know by
    /// that name, such as "GtkLabel"; it makes the toolkit know the class, and calls setClass().
    static void setLateClass(const std::string& widgetClass, std::function<void()> provide);
    /// A layout needs that class: provides it where it is late and not there yet.
    static void provideClass(const std::string& widgetClass);

    /// The widget, which lives as long as the view.
    GtkWidget* widget() const { return widget_; }

    /// Whether the view and what it holds is not shown. A hidden view takes no shortcuts either.
    bool isHidden() const;
    void setHidden(bool hidden);

    /// The place in the superview's coordinates, in points. What was set holds, negative or larger
    /// than the superview (which clips it), until the translation below is switched off; without
    /// it, what is set is ignored, and the place is what the layout has given last.
    CGRect frame() const;
    void setFrame(const CGRect& frame);
    /// The view's own coordinates: the origin is (0, 0).
    CGRect bounds() const;

    /// The view around this one; absent for one that stands alone.
    std::shared_ptr<UIView> superview() const;
    /// The views in this one, the topmost last.
    const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
    /// Adds a view on top, after taking it from where it was. A view that stands for a control
    /// holds none: a fatal error.
    void addSubview(const std::shared_ptr<UIView>& view);
    /// Takes the view out of its superview, with the constraints between them.
    void removeFromSuperview();
    /// Has the view drawn anew at the next frame.
    void setNeedsDisplay();

    /// Whether the frame that was set is kept; true at first. A view that is placed by constraints
    /// has it switched off.
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
    std::optional<CGRect> frame_;  // What was set, while it holds.
    bool translates_ = true;
    std::weak_ptr<UIResponder> controller_;  // Of the screen whose root this is.
};

}  // namespace orvalo
