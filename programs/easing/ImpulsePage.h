#pragma once

#include <gtkmm/checkbutton.h>
#include <gtkmm/label.h>
#include <gtkmm/spinbutton.h>

#include <memory>

#include "animation/Impulse.h"
#include "programs/easing/DemoPage.h"

namespace orvalo {

class ImpulseGraph;

/// A damped push, with optional bounds.
class ImpulsePage : public DemoPage {
  public:
    ImpulsePage();
    ~ImpulsePage() override;

    void play(const Pace& pace) override;
    void stop() override;
    void showEnd(const Pace& pace) override;
    Glib::ustring action() const override { return "_Push"; }
    bool hasDuration() const override { return false; }

  protected:
    void redraw() override;

  private:
    void setup(const Pace& pace);
    void showResult();
    void enableBounds();

    std::shared_ptr<Impulse> impulse_ = std::make_shared<Impulse>();
    int ticks_ = 0;
    int collisions_ = 0;

    Gtk::SpinButton amount_;
    Gtk::SpinButton intensity_;
    Gtk::CheckButton hasBounds_{"_Bounds", true};
    Gtk::SpinButton lower_;
    Gtk::SpinButton upper_;
    ImpulseGraph* graph_;
    Gtk::Label event_;
};

}  // namespace orvalo
