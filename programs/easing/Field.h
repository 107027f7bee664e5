#pragma once

#include <gtkmm/box.h>
#include <gtkmm/spinbutton.h>

namespace orvalo {

/// What a number can be, and is at first.
struct FieldRange {
    double least;
    double greatest;
    double step;
    unsigned digits;  ///< Behind the decimal point.
    double value;
};

/// A number with its name before it, behind which the field's mnemonic leads to it, and its unit
/// behind it, if it has one.
Gtk::Box& makeField(const Glib::ustring& name, Gtk::SpinButton& number, const FieldRange& range,
                    const Glib::ustring& unit = {});

}  // namespace orvalo
