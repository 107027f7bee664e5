#pragma once

#include <giomm/settings.h>
#include <gtkmm/settings.h>

namespace orvalo {

/// Whether the desktop asks for reduced motion. Two settings can: GTK's own, set by the desktop's
/// settings daemon or settings.ini, and GNOME's, where it is installed.
class Motion {
  public:
    Motion();

    bool isReduced() const;
    /// Emitted when isReduced() may have changed.
    sigc::signal<void()>& signalChanged() { return signalChanged_; }

  private:
    Glib::RefPtr<Gtk::Settings> toolkit_ = Gtk::Settings::get_default();
    Glib::RefPtr<Gio::Settings> desktop_;  ///< Absent where GNOME's settings are not installed.
    sigc::signal<void()> signalChanged_;
};

}  // namespace orvalo
