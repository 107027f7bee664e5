#pragma once

#include <gtkmm/drawingarea.h>

#include <memory>
#include <string>
#include <vector>

namespace orvalo {

class Animator;

/// A track for each animator, from 0 on the left to 1 on the right, with a ball at its value. The
/// first track is at the top.
class Lanes : public Gtk::DrawingArea {
  public:
    explicit Lanes(std::vector<std::shared_ptr<Animator>> animators);

    /// The text above each track.
    void setCaptions(std::vector<std::string> captions);
    /// How far the values may lie beyond 0 and 1.
    void setOvershoot(double overshoot);

  private:
    void draw(const Cairo::RefPtr<Cairo::Context>& pen, int width, int height);

    std::vector<std::shared_ptr<Animator>> animators_;
    std::vector<std::string> captions_;
    double overshoot_ = 0;
};

}  // namespace orvalo
