#include "platform/ui/KeyRepeat.h"

namespace orvalo {

namespace {

constexpr const char* kHeldKey = "orvalo-held-key";

struct HeldKey {
    guint code = 0;  ///< 0 while none is held.
    bool isRepeated = false;
};

HeldKey* heldKeyOf(GtkWidget* window) {
    return static_cast<HeldKey*>(g_object_get_data(G_OBJECT(window), kHeldKey));
}

}  // namespace

void watchKeys(GtkWidget* window) {
    g_object_set_data_full(G_OBJECT(window), kHeldKey, new HeldKey,
                           [](void* key) { delete static_cast<HeldKey*>(key); });
    // Of a widget's controllers of a phase, the last one added is first.
    auto* keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
    const auto pressed = +[](GtkEventController* sender, guint /*value*/, guint code) -> gboolean {
        auto& key = *heldKeyOf(gtk_event_controller_get_widget(sender));
        key = {code, key.code == code};
        return FALSE;
    };
    g_signal_connect(keys, "key-pressed", G_CALLBACK(pressed), nullptr);
    g_signal_connect_swapped(keys, "key-released",
                             G_CALLBACK(+[](GtkWidget* released) { forgetKeys(released); }),
                             window);
    gtk_widget_add_controller(window, keys);
    // The release of a key goes to the window that is active then.
    g_signal_connect(window, "notify::is-active",
                     G_CALLBACK(+[](GtkWidget* changed) { forgetKeys(changed); }), nullptr);
}

bool isKeyRepeated(GtkWidget* window) {
    const auto* key = heldKeyOf(window);
    return key != nullptr && key->isRepeated;
}

void forgetKeys(GtkWidget* window) {
    if (auto* key = heldKeyOf(window)) {
        *key = {};
    }
}

}  // namespace orvalo
