#include "platform/ui/NSLayoutConstraint.h"

#include <gtk/gtk.h>

#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/UIView.h"

namespace orvalo {

namespace {

GtkConstraintAttribute toolkitAttribute(NSLayoutAnchor::Attribute attribute) {
    switch (attribute) {
        case NSLayoutAnchor::Attribute::top:
            return GTK_CONSTRAINT_ATTRIBUTE_TOP;
        case NSLayoutAnchor::Attribute::leading:
            return GTK_CONSTRAINT_ATTRIBUTE_START;
        case NSLayoutAnchor::Attribute::bottom:
            return GTK_CONSTRAINT_ATTRIBUTE_BOTTOM;
        case NSLayoutAnchor::Attribute::trailing:
            return GTK_CONSTRAINT_ATTRIBUTE_END;
    }
    return GTK_CONSTRAINT_ATTRIBUTE_NONE;
}

/// The view that owns a constraint between the two: the superview of one, or of both. Absent when
/// there is none.
std::shared_ptr<UIView> ownerOf(const std::shared_ptr<UIView>& first,
                                const std::shared_ptr<UIView>& second) {
    if (!first || !second) {
        return nullptr;
    }
    auto aroundFirst = first->superview();
    const auto aroundSecond = second->superview();
    if (aroundFirst == second || (aroundFirst && aroundFirst == aroundSecond)) {
        return aroundFirst;
    }
    return aroundSecond == first ? first : nullptr;
}

/// Removes a constraint from a layout outside any window. gtk_constraint_layout_remove_constraint()
/// works in windows only, gtk_constraint_layout_remove_all_constraints() everywhere: this function
/// adds the others again.
void removeDetached(GtkConstraintLayout* layout, GtkConstraint* constraint) {
    std::vector<GtkConstraint*> others;
    {
        const GObjectPointer<GListModel> all(gtk_constraint_layout_observe_constraints(layout));
        for (guint index = 0; index < g_list_model_get_n_items(all.get()); ++index) {
            auto* held = GTK_CONSTRAINT(g_list_model_get_item(all.get(), index));
            if (held == constraint) {
                g_object_unref(held);
            } else {
                others.push_back(held);
            }
        }
    }
    gtk_constraint_layout_remove_all_constraints(layout);
    for (auto* other : others) {
        gtk_constraint_layout_add_constraint(layout, other);
    }
}

}  // namespace

NSLayoutAnchor::NSLayoutAnchor(const std::shared_ptr<UIView>& view, Attribute attribute)
    : view_(view), attribute_(attribute) {
    requireMainThread("NSLayoutAnchor");
}

std::shared_ptr<NSLayoutConstraint> NSLayoutAnchor::constraint(
    const NSLayoutAnchor& equalTo) const {
    return std::make_shared<NSLayoutConstraint>(*this, equalTo);
}

NSLayoutConstraint::NSLayoutConstraint(NSLayoutAnchor first, NSLayoutAnchor second)
    : first_(std::move(first)), second_(std::move(second)) {}

NSLayoutConstraint::~NSLayoutConstraint() {
    g_clear_object(&constraint_);
}

void NSLayoutConstraint::activate(
    const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints) {
    requireMainThread("NSLayoutConstraint.activate");
    for (const auto& constraint : constraints) {
        constraint->activate();
    }
}

void NSLayoutConstraint::activate() {
    const auto first = first_.view();
    const auto second = second_.view();
    const auto owner = ownerOf(first, second);
    auto* layout = owner ? gtk_widget_get_layout_manager(owner->widget()) : nullptr;
    if (!GTK_IS_CONSTRAINT_LAYOUT(layout)) {
        fatalError("NSLayoutConstraint.activate: the two views have no common superview.");
    }
    if (constraint_ != nullptr) {
        return;
    }
    const auto target = [&owner](const std::shared_ptr<UIView>& view) {
        // GTK's null target is the layout's own widget.
        return view == owner ? nullptr : GTK_CONSTRAINT_TARGET(view->widget());
    };
    constraint_ = gtk_constraint_new(target(first), toolkitAttribute(first_.attribute()),
                                     GTK_CONSTRAINT_RELATION_EQ, target(second),
                                     toolkitAttribute(second_.attribute()), 1.0, 0.0,
                                     GTK_CONSTRAINT_STRENGTH_REQUIRED);
    g_object_ref(constraint_);
    gtk_constraint_layout_add_constraint(GTK_CONSTRAINT_LAYOUT(layout), constraint_);
    owner->constraints_.push_back(shared(this));
}

bool NSLayoutConstraint::touches(const UIView& view) const {
    return first_.view().get() == &view || second_.view().get() == &view;
}

void NSLayoutConstraint::deactivate(UIView& owner) {
    auto* layout = gtk_widget_get_layout_manager(owner.widget());
    if (constraint_ != nullptr && GTK_IS_CONSTRAINT_LAYOUT(layout)) {
        if (gtk_constraint_is_attached(constraint_) != FALSE) {
            gtk_constraint_layout_remove_constraint(GTK_CONSTRAINT_LAYOUT(layout), constraint_);
        } else {
            removeDetached(GTK_CONSTRAINT_LAYOUT(layout), constraint_);
        }
    }
    g_clear_object(&constraint_);
    std::erase_if(owner.constraints_, [this](const auto& held) { return held.get() == this; });
}

}  // namespace orvalo
