#pragma once

#include <gtkmm/box.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orvalo {

/// How long a run takes, and how often its timer ticks.
struct Pace {
    double duration = 1.5;    ///< Seconds.
    double interval = 0.005;  ///< Seconds.

    /// The run's length in frames, at least 1.
    std::int64_t frames() const {
        return std::max<std::int64_t>(1, std::llround(duration / interval));
    }
};

/// A page of the window that plays a demonstration. The animation toolkit's own timers change the
/// values; the frame clock redraws the page while it plays.
class DemoPage : public Gtk::Box {
  public:
    DemoPage();

    /// Plays the demonstration from its start, also while it plays.
    virtual void play(const Pace& pace) = 0;
    /// Stops and keeps the values.
    virtual void stop() = 0;
    /// Shows the state at the end of play() without playing.
    virtual void showEnd(const Pace& pace) = 0;
    /// The button's label for play(), with a mnemonic.
    virtual Glib::ustring action() const { return "_Play"; }
    /// Whether play() uses the pace's duration.
    virtual bool hasDuration() const { return true; }

    bool isPlaying() const { return isPlaying_; }
    /// Emitted when playing starts and when it ends.
    sigc::signal<void()>& signalPlaying() { return signalPlaying_; }

  protected:
    void setPlaying(bool isPlaying);
    /// Called at every frame while the page plays, and once after the end.
    virtual void redraw() = 0;

  private:
    bool isPlaying_ = false;
    bool isOnClock_ = false;
    sigc::signal<void()> signalPlaying_;
};

}  // namespace orvalo
