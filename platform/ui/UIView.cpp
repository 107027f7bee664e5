#include "platform/ui/UIView.h"

#include <gtk/gtk.h>

#include <map>
#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/NSLayoutConstraint.h"
#include "platform/ui/ViewLayout.h"
#include "platform/ui/ViewWidget.h"

namespace orvalo {

namespace {

using Maker = std::function<std::shared_ptr<UIView>(GtkWidget*)>;

std::map<GType, Maker>& makers() {
    static auto* const known = new std::map<GType, Maker>;
    return *known;
}

std::map<std::string, std::function<void()>>& lateClasses() {
    static auto* const known = new std::map<std::string, std::function<void()>>;
    return *known;
}

GQuark viewKey() {
    static const GQuark key = g_quark_from_static_string("orvalo-view");
    return key;
}

UIView* viewOf(GtkWidget* widget) {
    return static_cast<UIView*>(g_object_get_qdata(G_OBJECT(widget), viewKey()));
}

UIView* viewAround(GtkWidget* widget) {
    auto* parent = gtk_widget_get_parent(widget);
    while (parent != nullptr && viewOf(parent) == nullptr) {
        parent = gtk_widget_get_parent(parent);
    }
    return parent == nullptr ? nullptr : viewOf(parent);
}

std::shared_ptr<UIView> make(GtkWidget* widget) {
    for (auto type = G_OBJECT_TYPE(widget); type != 0; type = g_type_parent(type)) {
        if (const auto found = makers().find(type); found != makers().end()) {
            return found->second(widget);
        }
    }
    return std::make_shared<UIView>(widget);
}

GtkWidget* newWidget() {
    requireMainThread("UIView");
    return GTK_WIDGET(g_object_new(viewWidgetType(), nullptr));
}

}  // namespace

UIView::UIView() : UIView(newWidget()) {}

UIView::UIView(GtkWidget* widget) : widget_(GTK_WIDGET(g_object_ref_sink(widget))) {
    requireMainThread("UIView");
    g_object_set_qdata(G_OBJECT(widget_), viewKey(), this);
}

UIView::~UIView() {
    holdFrame(widget_, nullptr);
    g_object_set_qdata(G_OBJECT(widget_), viewKey(), nullptr);
    g_object_unref(widget_);
}

std::shared_ptr<UIView> UIView::of(GtkWidget* widget) {
    requireMainThread("UIView.of");
    if (auto* known = viewOf(widget)) {
        return known->shared(known);
    }
    auto view = make(widget);
    if (auto* around = viewAround(widget)) {
        around->subviews_.push_back(view);
    }
    return view;
}

void UIView::setClass(std::size_t widgetType, Maker make) {
    makers().insert_or_assign(widgetType, std::move(make));
}

void UIView::setLateClass(const std::string& widgetClass, std::function<void()> provide) {
    lateClasses().insert_or_assign(widgetClass, std::move(provide));
}

void UIView::provideClass(const std::string& widgetClass) {
    if (auto found = lateClasses().extract(widgetClass)) {
        found.mapped()();
    }
}

bool UIView::isHidden() const {
    requireMainThread("UIView.isHidden");
    return gtk_widget_get_visible(widget_) == FALSE;
}

void UIView::setHidden(bool hidden) {
    requireMainThread("UIView.isHidden");
    gtk_widget_set_visible(widget_, hidden ? FALSE : TRUE);
    // The toolkit also sends shortcuts to hidden widgets, unless they are insensitive.
    gtk_widget_set_sensitive(widget_, hidden ? FALSE : TRUE);
}

CGRect UIView::frame() const {
    requireMainThread("UIView.frame");
    if (frame_) {
        return *frame_;
    }
    const auto* around = viewAround(widget_);
    graphene_rect_t bounds;
    if (around == nullptr ||
        gtk_widget_compute_bounds(widget_, around->widget_, &bounds) == FALSE) {
        return this->bounds();
    }
    return {double{bounds.origin.x}, double{bounds.origin.y}, double{bounds.size.width},
            double{bounds.size.height}};
}

void UIView::setFrame(const CGRect& frame) {
    requireMainThread("UIView.frame");
    if (translates_) {
        frame_ = frame;
        holdFrame(widget_, &*frame_);
    }
}

CGRect UIView::bounds() const {
    requireMainThread("UIView.bounds");
    if (frame_) {
        return {0, 0, frame_->size.width, frame_->size.height};
    }
    return {0, 0, static_cast<double>(gtk_widget_get_width(widget_)),
            static_cast<double>(gtk_widget_get_height(widget_))};
}

std::shared_ptr<UIView> UIView::superview() const {
    requireMainThread("UIView.superview");
    auto* around = viewAround(widget_);
    return around == nullptr ? nullptr : around->shared(around);
}

void UIView::addSubview(const std::shared_ptr<UIView>& view) {
    requireMainThread("UIView.addSubview");
    if (g_type_is_a(G_OBJECT_TYPE(widget_), viewWidgetType()) == FALSE) {
        fatalError("UIView.addSubview: a view over a " + std::string(G_OBJECT_TYPE_NAME(widget_)) +
                   " holds no subviews.");
    }
    view->removeFromSuperview();
    gtk_widget_set_parent(view->widget_, widget_);
    subviews_.push_back(view);
}

void UIView::removeFromSuperview() {
    requireMainThread("UIView.removeFromSuperview");
    const auto around = superview();
    if (!around) {
        return;
    }
    const auto self = shared(this);
    around->drop(*this);
    gtk_widget_unparent(widget_);
}

void UIView::drop(const UIView& subview) {
    const auto constraints = constraints_;
    for (const auto& constraint : constraints) {
        if (constraint->touches(subview)) {
            constraint->deactivate(*this);
        }
    }
    std::erase_if(subviews_, [&subview](const auto& held) { return held.get() == &subview; });
}

void UIView::setNeedsDisplay() {
    requireMainThread("UIView.setNeedsDisplay");
    gtk_widget_queue_draw(widget_);
}

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
    requireMainThread("UIView.translatesAutoresizingMaskIntoConstraints");
    translates_ = translates;
    if (!translates) {
        holdFrame(widget_, nullptr);
        frame_.reset();
    }
}

NSLayoutAnchor UIView::topAnchor() {
    return {shared(this), NSLayoutAnchor::Attribute::top};
}

NSLayoutAnchor UIView::leadingAnchor() {
    return {shared(this), NSLayoutAnchor::Attribute::leading};
}

NSLayoutAnchor UIView::bottomAnchor() {
    return {shared(this), NSLayoutAnchor::Attribute::bottom};
}

NSLayoutAnchor UIView::trailingAnchor() {
    return {shared(this), NSLayoutAnchor::Attribute::trailing};
}

std::shared_ptr<UIResponder> UIView::next() const {
    if (auto controller = controller_.lock()) {
        return controller;
    }
    return superview();
}

}  // namespace orvalo
