#include "programs/easing/Accessible.h"

#include <giomm/simpleactiongroup.h>
#include <gtk/gtk.h>

#include <algorithm>

namespace orvalo {

void setAccessibleName(Gtk::Widget& widget, const std::string& name) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   name.c_str(), -1);
}

void nameByLabel(Gtk::Button& button) {
    // A button without a name is named by the label inside it.
    gtk_accessible_reset_property(GTK_ACCESSIBLE(button.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL);
}

void nameByLabel(Gtk::CheckButton& button) {
    std::string name = button.get_label();
    name.erase(std::remove(name.begin(), name.end(), '_'), name.end());
    setAccessibleName(button, name);
    const auto actions = Gio::SimpleActionGroup::create();
    actions->add_action("click", [&button] { button.activate(); });
    button.insert_action_group("button", actions);
}

void showAsPicture(Gtk::Widget& widget, const std::string& name) {
    g_object_set(widget.gobj(), "accessible-role", GTK_ACCESSIBLE_ROLE_IMG, nullptr);
    setAccessibleName(widget, name);
}

}  // namespace orvalo
