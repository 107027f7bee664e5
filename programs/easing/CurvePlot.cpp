#include "programs/easing/CurvePlot.h"

#include <gtk/gtk.h>
#include <gtkmm/snapshot.h>

#include <algorithm>

#include "animation/EasingCurve.h"
#include "programs/easing/Colors.h"

namespace orvalo {

namespace {

constexpr double kDot = 3.5;  // Radii, in pixels.
constexpr double kBall = 4.5;
constexpr double kMargin = 7;
constexpr double kBallTrack = 14;  // Width beside the plot, in which the ball moves.

void fillCircle(GtkSnapshot* snapshot, double x, double y, double radius, const Gdk::RGBA& color) {
    const auto size = static_cast<float>(radius);
    const graphene_rect_t bounds{{static_cast<float>(x) - size, static_cast<float>(y) - size},
                                 {2 * size, 2 * size}};
    GskRoundedRect circle;
    gsk_rounded_rect_init_from_rect(&circle, &bounds, size);
    gtk_snapshot_push_rounded_clip(snapshot, &circle);
    gtk_snapshot_append_color(snapshot, color.gobj(), &bounds);
    gtk_snapshot_pop(snapshot);
}

}  // namespace

CurveSamples::CurveSamples(EnumEasing type) {
    constexpr int steps = 120;
    const auto curve = easingCurves.at(static_cast<std::size_t>(rawValue(type)));
    for (int step = 0; step <= steps; ++step) {
        values.push_back(static_cast<double>(curve(step, 0.0F, 1.0F, steps)));
    }
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    least = std::min(0.0, *lowest);
    greatest = std::max(1.0, *highest);
}

void CurvePlot::Release::operator()(GskRenderNode* node) const {
    gsk_render_node_unref(node);
}

CurvePlot::CurvePlot(EnumEasing type) : Glib::ObjectBase("OrvaloCurvePlot"), samples_(type) {
    set_expand();
    // Assistive technology reads the name of the button around it.
    g_object_set(gobj(), "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr);
}

void CurvePlot::setPlace(double share, double value) {
    if (share_ != share || value_ != value) {
        share_ = share;
        value_ = value;
        queue_draw();
    }
}

void CurvePlot::measure_vfunc(Gtk::Orientation orientation, int /*forSize*/, int& minimum,
                              int& natural, int& minimumBaseline, int& naturalBaseline) const {
    const bool isWidth = orientation == Gtk::Orientation::HORIZONTAL;
    minimum = isWidth ? 48 : 56;
    natural = isWidth ? 88 : 100;
    minimumBaseline = -1;
    naturalBaseline = -1;
}

void CurvePlot::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
    const Colors colors(*this);
    if (!picture_ || width_ != get_width() || height_ != get_height() || color_ != colors.text) {
        width_ = get_width();
        height_ = get_height();
        color_ = colors.text;
        drawPicture();
    }
    gtk_snapshot_append_node(snapshot->gobj(), picture_.get());
    const double y = yOf(value_);
    fillCircle(snapshot->gobj(), xOf(share_), y, kDot, colors.accent);
    fillCircle(snapshot->gobj(), width_ - kBallTrack / 2, y, kBall, colors.accent);
}

void CurvePlot::drawPicture() {
    auto* snapshot = gtk_snapshot_new();
    const graphene_rect_t bounds{{0, 0}, {static_cast<float>(width_), static_cast<float>(height_)}};
    Cairo::RefPtr<Cairo::Context> pen(
        new Cairo::Context(gtk_snapshot_append_cairo(snapshot, &bounds), true));
    // The levels of start and destination.
    pen->set_line_width(1);
    setColor(pen, faded(color_, 0.18F));
    for (const double level : {0.0, 1.0}) {
        const double y = std::round(yOf(level)) + 0.5;
        pen->move_to(xOf(0), y);
        pen->line_to(width_, y);
    }
    pen->stroke();
    pen->set_line_width(1.75);
    pen->set_line_join(Cairo::Context::LineJoin::ROUND);
    setColor(pen, faded(color_, 0.7F));
    const auto& values = samples_.values;
    for (std::size_t step = 0; step < values.size(); ++step) {
        pen->line_to(xOf(static_cast<double>(step) / static_cast<double>(values.size() - 1)),
                     yOf(values[step]));
    }
    pen->stroke();
    pen = nullptr;  // Finishes the drawing.
    picture_.reset(gtk_snapshot_free_to_node(snapshot));
}

double CurvePlot::xOf(double share) const {
    return kMargin + share * std::max(1.0, width_ - 2 * kMargin - kBallTrack);
}

double CurvePlot::yOf(double value) const {
    const double share = (value - samples_.least) / (samples_.greatest - samples_.least);
    return height_ - kMargin - share * (height_ - 2 * kMargin);
}

}  // namespace orvalo
