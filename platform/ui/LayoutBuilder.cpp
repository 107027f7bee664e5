#include "platform/ui/LayoutBuilder.h"

#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/ui/LayoutScope.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UIViewController.h"
#include "platform/ui/ViewLayout.h"
#include "platform/ui/ViewWidget.h"

namespace orvalo {

LayoutBuilder::LayoutBuilder(std::string layout, const std::string& screen,
                             const UIClass& ownerClass,
                             const std::shared_ptr<UIViewController>& owner)
    : layout_(std::move(layout)), builder_(gtk_builder_new()), owner_(owner) {
    const std::unique_ptr<GtkBuilderScope, Release<g_object_unref>> scope(
        newLayoutScope(ownerClass, owner));
    gtk_builder_set_scope(builder_.get(), scope.get());
    build(screen);
}

LayoutBuilder::LayoutBuilder(std::string layout, const std::string& object)
    : layout_(std::move(layout)), builder_(gtk_builder_new()) {
    build(object);
}

void LayoutBuilder::build(const std::string& object) {
    g_type_ensure(viewWidgetType());
    g_type_ensure(viewLayoutType());
    GError* error = nullptr;
    if (gtk_builder_add_from_string(builder_.get(), object.data(),
                                    static_cast<gssize>(object.size()), &error) == FALSE) {
        const std::unique_ptr<GError, Release<g_error_free>> held(error);
        fatalError(layout_ + ": " + held->message);
    }
}

GtkWidget* LayoutBuilder::plainWindow() {
    return gtk_application_window_new(GTK_APPLICATION(g_application_get_default()));
}

GtkWidget* LayoutBuilder::widget(const std::string& id) const {
    auto* object = gtk_builder_get_object(builder_.get(), id.c_str());
    if (!GTK_IS_WIDGET(object)) {
        fatalError(layout_ + ": \"" + id + "\" is no widget.");
    }
    return GTK_WIDGET(object);
}

void LayoutBuilder::takeSegue(const std::string& button, const std::string& segue) const {
    using Taken = std::pair<std::weak_ptr<UIViewController>, std::string>;
    const auto clicked = +[](GtkButton* sender, Taken* taken) {
        if (const auto owner = taken->first.lock()) {
            owner->performSegue(taken->second, UIView::of(GTK_WIDGET(sender)));
        }
    };
    auto* widget = this->widget(button);
    if (!GTK_IS_BUTTON(widget)) {
        fatalError(layout_ + ": \"" + button + "\", which takes a segue, is no button.");
    }
    g_signal_connect_data(
        widget, "clicked", G_CALLBACK(clicked), new Taken(owner_, segue),
        [](void* taken, GClosure*) { delete static_cast<Taken*>(taken); }, GConnectFlags{});
}

}  // namespace orvalo
