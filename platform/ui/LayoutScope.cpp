#include "platform/ui/LayoutScope.h"

#include <string>

#include "platform/ui/UIClass.h"
#include "platform/ui/UIViewController.h"

namespace orvalo {

namespace {

struct Owner {
    const UIClass* described;
    std::weak_ptr<UIViewController> held;
};

struct LayoutScope {
    GtkBuilderCScope parent;
    Owner* owner;
};

struct LayoutScopeClass {
    GtkBuilderCScopeClass parent;
};

void* parentClass = nullptr;
GType (*parentTypeFromName)(GtkBuilderScope*, GtkBuilder*, const char*) = nullptr;

/// One handler of a signal.
struct Handler {
    Owner owner;
    std::string action;
};

/// Whatever a signal hands over, the action gets the object that sent it.
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

}  // namespace

GtkBuilderScope* newLayoutScope(const UIClass& ownerClass,
                                const std::shared_ptr<UIViewController>& owner) {
    auto* object = g_object_new(scopeType(), nullptr);
    static_cast<LayoutScope*>(object)->owner = new Owner{&ownerClass, owner};
    return GTK_BUILDER_SCOPE(object);
}

}  // namespace orvalo
