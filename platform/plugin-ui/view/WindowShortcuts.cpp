#include "platform/plugin-ui/view/WindowShortcuts.h"

#include <X11/XKBlib.h>
#include <gdk/x11/gdkx.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

template <typename Type>
using Held = std::unique_ptr<Type, Release<g_object_unref>>;

/// A key as shortcuts name it.
struct Stroke {
    guint keyval;
    GdkModifierType modifiers;
};

/// X and the toolkit give the first eight modifiers the same bits.
constexpr unsigned kModifierBits = 0xFF;
/// Where keyboards have the key for the desktop's own shortcuts, by custom.
constexpr unsigned kSuper = Mod4Mask;

/// What the key means in the keyboard's group of the moment, and, for shortcuts in letters that
/// this group does not have, in the other groups.
std::vector<Stroke> readings(GdkDisplay* display, const X11Key& key) {
    const auto state = static_cast<GdkModifierType>(key.state & kModifierBits);
    unsigned modifiers = key.state & (GDK_SHIFT_MASK | GDK_CONTROL_MASK | GDK_ALT_MASK);
    if ((key.state & kSuper) != 0) {
        modifiers |= GDK_SUPER_MASK;
    }
    std::vector<Stroke> result;
    const auto add = [&](int group) {
        guint keyval = 0;
        GdkModifierType consumed{};
        if (gdk_display_translate_key(display, key.code, state, group, &keyval, nullptr, nullptr,
                                      &consumed) != FALSE) {
            // Shift makes the letter, and may be a part of the shortcut all the same.
            const unsigned used = consumed & ~unsigned{GDK_SHIFT_MASK};
            result.push_back(
                {gdk_keyval_to_lower(keyval), static_cast<GdkModifierType>(modifiers & ~used)});
        }
    };
    const int now = XkbGroupForCoreState(key.state);
    add(now);
    for (int group = 0; group < XkbNumKbdGroups; ++group) {
        if (group != now) {
            add(group);
        }
    }
    return result;
}

bool matches(GtkShortcutTrigger* trigger, const Stroke& stroke) {
    if (GTK_IS_ALTERNATIVE_TRIGGER(trigger)) {
        auto* either = GTK_ALTERNATIVE_TRIGGER(trigger);
        return matches(gtk_alternative_trigger_get_first(either), stroke) ||
               matches(gtk_alternative_trigger_get_second(either), stroke);
    }
    if (!GTK_IS_KEYVAL_TRIGGER(trigger)) {
        return false;
    }
    auto* plain = GTK_KEYVAL_TRIGGER(trigger);
    return gdk_keyval_to_lower(gtk_keyval_trigger_get_keyval(plain)) == stroke.keyval &&
           gtk_keyval_trigger_get_modifiers(plain) == stroke.modifiers;
}

/// A shortcut, and the widget that it is for.
struct Shortcut {
    Held<GtkShortcut> shortcut;
    Held<GtkWidget> widget;
};

template <typename Type, typename Visit>
void forEach(GListModel* list, const Visit& visit) {
    for (guint index = 0; index < g_list_model_get_n_items(list); ++index) {
        const Held<Type> item(static_cast<Type*>(g_list_model_get_item(list, index)));
        visit(item.get());
    }
}

/// Of the widget and all inside that can be used.
void collect(GtkWidget* widget, std::vector<Shortcut>& result) {
    if (gtk_widget_get_mapped(widget) == FALSE || gtk_widget_is_sensitive(widget) == FALSE) {
        return;
    }
    const Held<GListModel> controllers(gtk_widget_observe_controllers(widget));
    forEach<GtkEventController>(controllers.get(), [&](GtkEventController* controller) {
        if (GTK_IS_SHORTCUT_CONTROLLER(controller) &&
            gtk_shortcut_controller_get_scope(GTK_SHORTCUT_CONTROLLER(controller)) !=
                GTK_SHORTCUT_SCOPE_LOCAL) {
            forEach<GtkShortcut>(G_LIST_MODEL(controller), [&](GtkShortcut* shortcut) {
                result.push_back({Held<GtkShortcut>(GTK_SHORTCUT(g_object_ref(shortcut))),
                                  Held<GtkWidget>(GTK_WIDGET(g_object_ref(widget)))});
            });
        }
    });
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        collect(child, result);
    }
}

bool activate(const Shortcut& shortcut) {
    return gtk_shortcut_action_activate(
               gtk_shortcut_get_action(shortcut.shortcut.get()), GTK_SHORTCUT_ACTION_EXCLUSIVE,
               shortcut.widget.get(), gtk_shortcut_get_arguments(shortcut.shortcut.get())) != FALSE;
}

}  // namespace

bool activateShortcut(GtkWidget* widget, const X11Key& key) {
    auto* root = gtk_widget_get_root(widget);
    if (root == nullptr) {
        return false;
    }
    std::vector<Shortcut> shortcuts;
    collect(GTK_WIDGET(root), shortcuts);
    for (const auto& stroke : readings(gtk_widget_get_display(widget), key)) {
        const auto found =
            std::find_if(shortcuts.begin(), shortcuts.end(), [&stroke](const auto& shortcut) {
                return matches(gtk_shortcut_get_trigger(shortcut.shortcut.get()), stroke) &&
                       activate(shortcut);
            });
        if (found != shortcuts.end()) {
            return true;
        }
    }
    return false;
}

}  // namespace orvalo
