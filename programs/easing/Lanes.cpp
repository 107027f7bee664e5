#include "programs/easing/Lanes.h"

#include <numbers>
#include <utility>

#include "animation/Animator.h"
#include "programs/easing/Accessible.h"
#include "programs/easing/Colors.h"

namespace orvalo {

namespace {

constexpr double kBall = 11;  // Radii, in pixels.
constexpr double kTrack = 3;

void drawTrack(const Cairo::RefPtr<Cairo::Context>& pen, double left, double right, double y,
               const Gdk::RGBA& color) {
    setColor(pen, color);
    pen->set_line_cap(Cairo::Context::LineCap::ROUND);
    pen->set_line_width(2 * kTrack);
    pen->move_to(left, y);
    pen->line_to(right, y);
    pen->stroke();
}

void drawBall(const Cairo::RefPtr<Cairo::Context>& pen, double x, double y,
              const Gdk::RGBA& color) {
    setColor(pen, color);
    pen->arc(x, y, kBall, 0, 2 * std::numbers::pi);
    pen->fill();
}

}  // namespace

Lanes::Lanes(std::vector<std::shared_ptr<Animator>> animators) : animators_(std::move(animators)) {
    set_expand();
    set_content_height(270);
    showAsPicture(*this, "The animators and their values");
    set_draw_func(sigc::mem_fun(*this, &Lanes::draw));
}

void Lanes::setCaptions(std::vector<std::string> captions) {
    captions_ = std::move(captions);
    queue_draw();
}

void Lanes::setOvershoot(double overshoot) {
    overshoot_ = overshoot;
    queue_draw();
}

void Lanes::draw(const Cairo::RefPtr<Cairo::Context>& pen, int width, int height) {
    const Colors colors(*this);
    const double length = (width - 2 * kBall) / (1 + 2 * overshoot_);
    const double left = kBall + overshoot_ * length;
    const double right = left + length;
    const double pitch = height / static_cast<double>(animators_.size());
    for (std::size_t lane = 0; lane < animators_.size(); ++lane) {
        const double y = pitch * (static_cast<double>(lane) + 0.4);
        const auto& animator = *animators_[lane];
        const auto value = static_cast<double>(animator.getValue());
        drawTrack(pen, left, right, y, faded(colors.text, 0.14F));
        drawBall(pen, left + value * length, y, colors.accent);
        if (lane < captions_.size()) {
            const auto layout = create_pango_layout(captions_[lane]);
            setColor(pen, faded(colors.text, 0.65F));
            pen->move_to(left - kTrack, y + kBall + 4);
            layout->show_in_cairo_context(pen);
        }
    }
}

}  // namespace orvalo
