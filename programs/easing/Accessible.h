#pragma once

#include <gtkmm/button.h>
#include <gtkmm/checkbutton.h>

#include <string>

namespace orvalo {

/// Sets the widget's name for assistive technology.
void setAccessibleName(Gtk::Widget& widget, const std::string& name);

/// Names the button by its label for assistive technology. GTK leaves the underline of a mnemonic
/// in the name, so call this again whenever the label changes.
void nameByLabel(Gtk::Button& button);

/// The same for a check button. Also adds the action by which assistive technology presses it,
/// which GTK lacks.
void nameByLabel(Gtk::CheckButton& button);

/// Presents the widget to assistive technology as a picture of that name.
void showAsPicture(Gtk::Widget& widget, const std::string& name);

}  // namespace orvalo
