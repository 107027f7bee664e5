#pragma once

#include <gtkmm/box.h>

#include "programs/easing/Pace.h"

namespace orvalo {

/// A page of the window, on which something plays. While it does, the frame clock has it drawn;
/// what moves is moved by the animation toolkit's own timers.
class DemoPage : public Gtk::Box {
  public:
    DemoPage();

    /// Plays from the start, whatever went on before.
    virtual void play(const Pace& pace) = 0;
    /// Ends what plays, where it is.
    virtual void stop() = 0;
    /// Shows at once what play() comes to in the end.
    virtual void showEnd(const Pace& pace) = 0;
    /// What the button calls play(), with a mnemonic.
    virtual Glib::ustring action() const { return "_Play"; }
    /// Whether play() takes as long as the pace says.
    virtual bool hasDuration() const { return true; }

    bool isPlaying() const { return isPlaying_; }
    /// Comes when playing begins, and when it ends.
    sigc::signal<void()>& signalPlaying() { return signalPlaying_; }

  protected:
    void setPlaying(bool isPlaying);
    /// Has drawn again what moves. Also comes once after the end.
    virtual void drawAgain() = 0;

  private:
    bool isPlaying_ = false;
    bool isOnClock_ = false;
    sigc::signal<void()> signalPlaying_;
};

}  // namespace orvalo
