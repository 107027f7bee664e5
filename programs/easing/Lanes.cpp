#include "programs/easing/Lanes.h"

#include <algorithm>
#include <numbers>
#include <utility>

#include "animation/Animator.h"
#include "programs/easing/Accessible.h"
#include "programs/easing/Colors.h"

namespace orvalo {

namespace {

constexpr double kLeastBall = 11;  // Radii, in pixels.
constexpr double kGreatestBall = 40;
constexpr double kCaption = 22;  // The height of the text above a track.

void drawTrack(const Cairo::RefPtr<Cairo::Context>& pen, double left, double right, double y,
               double thickness, const Gdk::RGBA& color) {
    setColor(pen, color);
    pen->set_line_cap(Cairo::Context::LineCap::ROUND);
    pen->set_line_width(thickness);
    pen->move_to(left, y);
    pen->line_to(right, y);
    pen->stroke();
}

void drawBall(const Cairo::RefPtr<Cairo::Context>& pen, double x, double y, double radius,
              const Gdk::RGBA& color) {
    setColor(pen, color);
    pen->arc(x, y, radius, 0, 2 * std::numbers::pi);
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
    const double pitch = height / static_cast<double>(animators_.size());
    // The lanes fill the page: beside the text a ball takes what is left of its lane.
    const double ball = std::clamp((pitch - kCaption) / 2 - 4, kLeastBall, kGreatestBall);
    const double length = (width - 2 * ball) / (1 + 2 * overshoot_);
    const double left = ball + overshoot_ * length;
    const double right = left + length;
    for (std::size_t lane = 0; lane < animators_.size(); ++lane) {
        const double top = pitch * static_cast<double>(lane);
        const double y = top + (pitch + kCaption) / 2;
        const auto& animator = *animators_[lane];
        const auto value = static_cast<double>(animator.getValue());
        drawTrack(pen, left, right, y, ball * 0.7, faded(colors.text, 0.14F));
        drawBall(pen, left + value * length, y, ball, colors.accent);
        if (lane < captions_.size()) {
            const auto layout = create_pango_layout(captions_[lane]);
            setColor(pen, faded(colors.text, 0.65F));
            pen->move_to(left - ball * 0.35, y - ball - kCaption);
            layout->show_in_cairo_context(pen);
        }
    }
}

}  // namespace orvalo
