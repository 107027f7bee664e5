#pragma once

#include <giomm/settings.h>
#include <gtkmm/settings.h>

namespace orvalo {

/// Whether the desktop wants things to move. Two say so: the toolkit's setting, which a desktop's
/// settings daemon or a settings.ini sets, and GNOME's own, where there is one. Either may decline.
class Motion {
  public:
    Motion();

    bool isReduced() const;
    /// Comes when that may have changed.
    sigc::signal<void()>& signalChanged() { return signalChanged_; }

  private:
    Glib::RefPtr<Gtk::Settings> toolkit_ = Gtk::Settings::get_default();
    Glib::RefPtr<Gio::Settings> desktop_;  ///< Absent where GNOME's settings are not installed.
    sigc::signal<void()> signalChanged_;
};

}  // namespace orvalo
