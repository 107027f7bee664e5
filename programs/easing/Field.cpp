#include "programs/easing/Field.h"

#include <gtkmm/label.h>

namespace orvalo {

Gtk::Box& makeField(const Glib::ustring& name, Gtk::SpinButton& number, const FieldRange& range,
                    const Glib::ustring& unit) {
    auto& row = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    auto& label = *Gtk::make_managed<Gtk::Label>(name, true);
    number.set_range(range.least, range.greatest);
    number.set_increments(range.step, 10 * range.step);
    number.set_digits(range.digits);
    number.set_numeric();
    number.set_value(range.value);
    label.set_mnemonic_widget(number);
    row.append(label);
    row.append(number);
    if (!unit.empty()) {
        auto& unitLabel = *Gtk::make_managed<Gtk::Label>(unit);
        unitLabel.add_css_class("dim-label");
        row.append(unitLabel);
    }
    return row;
}

}  // namespace orvalo
