#include "programs/easing/DemoPage.h"

#include <gdkmm/frameclock.h>

#include <utility>

namespace orvalo {

DemoPage::DemoPage() : Gtk::Box(Gtk::Orientation::VERTICAL, 12) {
    set_margin(18);
}

void DemoPage::setPlaying(bool isPlaying) {
    if (isPlaying && !std::exchange(isOnClock_, true)) {
        add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>& /*clock*/) {
            redraw();
            return isOnClock_ = isPlaying_;
        });
    }
    if (std::exchange(isPlaying_, isPlaying) != isPlaying) {
        signalPlaying_.emit();
    }
}

}  // namespace orvalo
