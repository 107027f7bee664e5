#include "platform/plugin-ui/view/WindowShortcuts.h"

#include <X11/XKBlib.h>
#include <gdk/x11/gdkx.h>

#include <algorithm>
#include <vector>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

// X and GTK have the same bits for the first eight modifiers.
constexpr unsigned kModifierBits = 0xFF;
// The modifier that the Super key sets by convention.
constexpr unsigned kSuper = Mod4Mask;

/// The triggers that the key may mean: in its own keyboard group first, then in the other groups,
/// for shortcuts with letters that the first lacks.
std::vector<GObjectPointer<GtkShortcutTrigger>> triggersOf(GdkDisplay* display, const X11Key& key) {
    const auto state = static_cast<GdkModifierType>(key.state & kModifierBits);
    unsigned modifiers = key.state & (GDK_SHIFT_MASK | GDK_CONTROL_MASK | GDK_ALT_MASK);
    if ((key.state & kSuper) != 0) {
        modifiers |= GDK_SUPER_MASK;
    }
    std::vector<GObjectPointer<GtkShortcutTrigger>> result;
    const auto add = [&](int group) {
        guint keyval = 0;
        GdkModifierType consumed{};
        if (gdk_display_translate_key(display, key.code, state, group, &keyval, nullptr, nullptr,
                                      &consumed) != FALSE) {
            // Shift may belong to the shortcut although it is consumed for the letter.
            const unsigned used = consumed & ~unsigned{GDK_SHIFT_MASK};
            result.emplace_back(
                gtk_keyval_trigger_new(keyval, static_cast<GdkModifierType>(modifiers & ~used)));
        }
    };
    const int current = XkbGroupForCoreState(key.state);
    add(current);
    for (int group = 0; group < XkbNumKbdGroups; ++group) {
        if (group != current) {
            add(group);
        }
    }
    return result;
}

// gtk_shortcut_trigger_trigger() needs a key event, which only GDK can make.
bool matches(GtkShortcutTrigger* trigger, GtkShortcutTrigger* key) {
    if (GTK_IS_ALTERNATIVE_TRIGGER(trigger)) {
        auto* either = GTK_ALTERNATIVE_TRIGGER(trigger);
        return matches(gtk_alternative_trigger_get_first(either), key) ||
               matches(gtk_alternative_trigger_get_second(either), key);
    }
    return gtk_shortcut_trigger_equal(trigger, key) != FALSE;
}

template <typename Type>
GObjectPointer<Type> item(GListModel* list, guint index) {
    return GObjectPointer<Type>(static_cast<Type*>(g_list_model_get_item(list, index)));
}

/// Activates a widget's shortcut for the key; false without one.
bool activateOwn(GtkWidget* widget, GtkShortcutTrigger* key) {
    const GObjectPointer<GListModel> controllers(gtk_widget_observe_controllers(widget));
    for (guint i = 0; i < g_list_model_get_n_items(controllers.get()); ++i) {
        const auto controller = item<GtkEventController>(controllers.get(), i);
        if (!GTK_IS_SHORTCUT_CONTROLLER(controller.get()) ||
            gtk_shortcut_controller_get_scope(GTK_SHORTCUT_CONTROLLER(controller.get())) ==
                GTK_SHORTCUT_SCOPE_LOCAL) {
            continue;
        }
        auto* shortcuts = G_LIST_MODEL(controller.get());
        for (guint j = 0; j < g_list_model_get_n_items(shortcuts); ++j) {
            const auto shortcut = item<GtkShortcut>(shortcuts, j);
            if (matches(gtk_shortcut_get_trigger(shortcut.get()), key) &&
                gtk_shortcut_action_activate(gtk_shortcut_get_action(shortcut.get()),
                                             GTK_SHORTCUT_ACTION_EXCLUSIVE, widget,
                                             gtk_shortcut_get_arguments(shortcut.get())) != FALSE) {
                return true;
            }
        }
    }
    return false;
}

/// As activateOwn(), for the widget or one inside it.
bool activate(GtkWidget* widget, GtkShortcutTrigger* key) {
    if (gtk_widget_get_mapped(widget) == FALSE || gtk_widget_is_sensitive(widget) == FALSE) {
        return false;
    }
    if (activateOwn(widget, key)) {
        return true;
    }
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (activate(child, key)) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<bool> tabDirection(GtkWidget* widget, const X11Key& key) {
    guint keyval = 0;
    if (gdk_display_translate_key(gtk_widget_get_display(widget), key.code,
                                  static_cast<GdkModifierType>(key.state & kModifierBits),
                                  XkbGroupForCoreState(key.state), &keyval, nullptr, nullptr,
                                  nullptr) == FALSE ||
        (key.state & (GDK_CONTROL_MASK | GDK_ALT_MASK)) != 0) {
        return std::nullopt;
    }
    if (keyval == GDK_KEY_ISO_Left_Tab) {
        return true;
    }
    if (keyval != GDK_KEY_Tab && keyval != GDK_KEY_KP_Tab) {
        return std::nullopt;
    }
    return (key.state & GDK_SHIFT_MASK) != 0;
}

bool activateShortcut(GtkWidget* widget, const X11Key& key) {
    auto* root = gtk_widget_get_root(widget);
    if (root == nullptr) {
        return false;
    }
    // The plug-in UI has the keyboard, so no focus of the toolkit is meant.
    gtk_window_set_focus_visible(GTK_WINDOW(root), FALSE);
    const auto triggers = triggersOf(gtk_widget_get_display(widget), key);
    return std::any_of(triggers.begin(), triggers.end(), [root](const auto& trigger) {
        return activate(GTK_WIDGET(root), trigger.get());
    });
}

}  // namespace orvalo
