#pragma once

#include <gtkmm/applicationwindow.h>
#include <gtkmm/button.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/label.h>
#include <gtkmm/spinbutton.h>
#include <gtkmm/stack.h>

#include <functional>
#include <memory>
#include <vector>

#include "platform/foundation/Timer.h"
#include "programs/easing/DemoPage.h"
#include "programs/easing/Motion.h"

namespace orvalo {

/// The window: one page at a time, and below it the controls for the pace.
class EasingWindow : public Gtk::ApplicationWindow {
  public:
    EasingWindow();
    ~EasingWindow() override;

  private:
    void addPage(DemoPage& page, const Glib::ustring& name);
    Gtk::Widget& makeBar();
    void addShortcut(const char* keys, std::function<void()> action);

    DemoPage& page() const { return *page_; }
    Pace pace() const;
    void play();
    void playOrStop();
    void pageChanged();
    void playingChanged();
    void motionChanged();
    void updateButton();
    void cancelRest();

    Motion motion_;
    std::vector<DemoPage*> pages_;
    DemoPage* page_ = nullptr;
    std::shared_ptr<Timer> rest_;  ///< Runs during the rest between two runs.
    bool isOwnCommand_ = false;    ///< True while the window itself makes a page play or stop.

    Gtk::Stack stack_;
    Gtk::Label reducedMotionNote_;
    Gtk::SpinButton duration_;
    Gtk::SpinButton interval_;
    Gtk::CheckButton repeat_{"_Repeat", true};
    Gtk::Button button_;
    Gtk::Widget* durationField_ = nullptr;
};

}  // namespace orvalo
