#pragma once

#include <gtkmm/button.h>
#include <gtkmm/checkbutton.h>

#include <string>

namespace orvalo {

/// What assistive technology calls the widget.
void setAccessibleName(Gtk::Widget& widget, const std::string& name);

/// Has assistive technology call the button what stands on it. The toolkit leaves the underline of
/// a mnemonic in the name, and so must be told again whenever the button's label has changed.
void nameByLabel(Gtk::Button& button);

/// The same for a check button. It can also be pressed by assistive technology then, to which the
/// toolkit offers no way to do so.
void nameByLabel(Gtk::CheckButton& button);

/// Has assistive technology call the widget a picture of that name.
void showAsPicture(Gtk::Widget& widget, const std::string& name);

}  // namespace orvalo
