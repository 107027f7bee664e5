#include "platform/ui/LayoutBuilder.h"

#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UIViewController.h"
#include "platform/ui/ViewLayout.h"
#include "platform/ui/ViewWidget.h"

namespace orvalo {

namespace {

struct Owner {
    const UIClass* described;
    std::weak_ptr<UIViewController> held;
};

/// Maps the handlers of a screen's signals to actions of its owner, which is not kept alive. A
/// handler without an action does nothing.
struct LayoutScope {
    GtkBuilderCScope parent;
    Owner* owner;
};

struct LayoutScopeClass {
    GtkBuilderCScopeClass parent;
};

void* parentClass = nullptr;
GType (*parentTypeFromName)(GtkBuilderScope*, GtkBuilder*, const char*) = nullptr;

struct Handler {
    Owner owner;
    std::string action;
};

/// Whatever the signal's arguments are, the action gets the object that sent it.
void send(GClosure* closure, GValue* /*result*/, guint /*count*/, const GValue* values,
          void* /*hint*/, void* /*data*/) {
    const auto& handler = *static_cast<Handler*>(closure->data);
    const auto owner = handler.owner.held.lock();
    if (owner && handler.owner.described->hasAction(handler.action)) {
        auto* sender = g_value_get_object(values);
        handler.owner.described->perform(
            *owner, handler.action,
            GTK_IS_WIDGET(sender) ? UIView::of(GTK_WIDGET(sender)) : nullptr);
    }
}

GClosure* createClosure(GtkBuilderScope* self, GtkBuilder* /*builder*/, const char* handler,
                        GtkBuilderClosureFlags /*flags*/, GObject* /*object*/, GError** /*error*/) {
    const auto* owner = reinterpret_cast<LayoutScope*>(self)->owner;
    auto* closure = g_closure_new_simple(sizeof(GClosure), new Handler{*owner, handler});
    g_closure_add_finalize_notifier(
        closure, closure->data, [](void* data, GClosure*) { delete static_cast<Handler*>(data); });
    g_closure_set_marshal(closure, send);
    return closure;
}

GType typeFromName(GtkBuilderScope* self, GtkBuilder* builder, const char* name) {
    UIView::provideClass(name);
    return parentTypeFromName(self, builder, name);
}

void finalize(GObject* object) {
    delete reinterpret_cast<LayoutScope*>(object)->owner;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initClass(void* type, void* /*data*/) {
    parentClass = g_type_class_peek_parent(type);
    G_OBJECT_CLASS(type)->finalize = finalize;
}

void initScope(void* vtable, void* /*data*/) {
    auto* scope = static_cast<GtkBuilderScopeInterface*>(vtable);
    scope->create_closure = createClosure;
    parentTypeFromName = scope->get_type_from_name;
    scope->get_type_from_name = typeFromName;
}

GType scopeType() {
    static const GType type = [] {
        const auto registered = g_type_register_static_simple(
            GTK_TYPE_BUILDER_CSCOPE, "OrvaloLayoutScope", sizeof(LayoutScopeClass), initClass,
            sizeof(LayoutScope), nullptr, GTypeFlags{});
        const GInterfaceInfo scope{initScope, nullptr, nullptr};
        g_type_add_interface_static(registered, GTK_TYPE_BUILDER_SCOPE, &scope);
        return registered;
    }();
    return type;
}

GtkBuilderScope* newLayoutScope(const UIClass& ownerClass,
                                const std::shared_ptr<UIViewController>& owner) {
    auto* object = g_object_new(scopeType(), nullptr);
    static_cast<LayoutScope*>(object)->owner = new Owner{&ownerClass, owner};
    return GTK_BUILDER_SCOPE(object);
}

}  // namespace

LayoutBuilder::LayoutBuilder(std::string layout, const std::string& screen,
                             const UIClass& ownerClass,
                             const std::shared_ptr<UIViewController>& owner)
    : layout_(std::move(layout)), builder_(gtk_builder_new()), owner_(owner) {
    const GObjectPointer<GtkBuilderScope> scope(newLayoutScope(ownerClass, owner));
    gtk_builder_set_scope(builder_.get(), scope.get());
    build(screen);
}

LayoutBuilder::LayoutBuilder(std::string layout, const std::string& object)
    : layout_(std::move(layout)), builder_(gtk_builder_new()) {
    build(object);
}

namespace {

/// Activates the widget whose focus the user sees, else does what the shortcut does.
gboolean activateFocusOr(GtkWidget* widget, GVariant* arguments, void* action) {
    auto* root = gtk_widget_get_root(widget);
    if (GTK_IS_WINDOW(root)) {
        auto* focus = gtk_window_get_focus(GTK_WINDOW(root));
        if (focus != nullptr && gtk_window_get_focus_visible(GTK_WINDOW(root)) != FALSE &&
            gtk_widget_activate(focus) != FALSE) {
            return TRUE;
        }
    }
    return gtk_shortcut_action_activate(GTK_SHORTCUT_ACTION(action), GTK_SHORTCUT_ACTION_EXCLUSIVE,
                                        widget, arguments);
}

/// Shortcuts of the capture phase get the space bar before the focused widget. Those of the bubble
/// phase never get it, because GtkWindow takes it.
void preferVisibleFocus(GtkBuilder* builder) {
    GSList* objects = gtk_builder_get_objects(builder);
    for (const GSList* link = objects; link != nullptr; link = link->next) {
        if (!GTK_IS_SHORTCUT_CONTROLLER(link->data) ||
            gtk_event_controller_get_propagation_phase(GTK_EVENT_CONTROLLER(link->data)) !=
                GTK_PHASE_CAPTURE) {
            continue;
        }
        auto* shortcuts = G_LIST_MODEL(link->data);
        for (guint index = 0; index < g_list_model_get_n_items(shortcuts); ++index) {
            const GObjectPointer<GtkShortcut> shortcut(
                GTK_SHORTCUT(g_list_model_get_item(shortcuts, index)));
            auto* action = gtk_shortcut_get_action(shortcut.get());
            gtk_shortcut_set_action(
                shortcut.get(),
                gtk_callback_action_new(activateFocusOr, g_object_ref(action), g_object_unref));
        }
    }
    g_slist_free(objects);
}

}  // namespace

void LayoutBuilder::build(const std::string& object) {
    g_type_ensure(viewWidgetType());
    g_type_ensure(viewLayoutType());
    GError* error = nullptr;
    if (gtk_builder_add_from_string(builder_.get(), object.data(),
                                    static_cast<gssize>(object.size()), &error) == FALSE) {
        fatalError(layout_ + ": " + GErrorPointer(error)->message);
    }
    preferVisibleFocus(builder_.get());
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

void LayoutBuilder::connectSegue(const std::string& button, const std::string& segue) const {
    using Trigger = std::pair<std::weak_ptr<UIViewController>, std::string>;
    const auto clicked = +[](GtkButton* sender, Trigger* trigger) {
        if (const auto owner = trigger->first.lock()) {
            owner->performSegue(trigger->second, UIView::of(GTK_WIDGET(sender)));
        }
    };
    auto* widget = this->widget(button);
    if (!GTK_IS_BUTTON(widget)) {
        fatalError(layout_ + ": \"" + button + "\", which takes a segue, is no button.");
    }
    g_signal_connect_data(
        widget, "clicked", G_CALLBACK(clicked), new Trigger(owner_, segue),
        [](void* trigger, GClosure*) { delete static_cast<Trigger*>(trigger); }, GConnectFlags{});
}

}  // namespace orvalo
