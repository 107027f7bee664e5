#pragma once

#include <gtkmm/drawingarea.h>

#include <memory>
#include <string>
#include <vector>

namespace orvalo {

class Animator;

/// A track for each animator, on which a ball stands where its value is: 0 at the left end, 1 at
/// the right end. The first track is at the top.
class Lanes : public Gtk::DrawingArea {
  public:
    explicit Lanes(std::vector<std::shared_ptr<Animator>> animators);

    /// What is written below each track.
    void setCaptions(std::vector<std::string> captions);

  private:
    void draw(const Cairo::RefPtr<Cairo::Context>& pen, int width, int height);

    std::vector<std::shared_ptr<Animator>> animators_;
    std::vector<std::string> captions_;
};

}  // namespace orvalo
