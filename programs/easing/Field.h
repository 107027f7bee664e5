#pragma once

#include <gtkmm/box.h>
#include <gtkmm/spinbutton.h>

namespace orvalo {

/// The range of a number field, and its initial value.
struct FieldRange {
    double least;
    double greatest;
    double step;
    unsigned digits;  ///< Decimal places.
    double value;
};

/// A row with the name as the field's mnemonic label, the field, and the unit if there is one.
Gtk::Box& makeField(const Glib::ustring& name, Gtk::SpinButton& number, const FieldRange& range,
                    const Glib::ustring& unit = {});

}  // namespace orvalo
