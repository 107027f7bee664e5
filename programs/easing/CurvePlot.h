#pragma once

#include <gtkmm/widget.h>

#include <memory>
#include <vector>

#include "animation/EnumEasing.h"

using GskRenderNode = struct _GskRenderNode;  // NOLINT(bugprone-reserved-identifier): GSK's own.

namespace orvalo {

/// A curve's values from 0 to 1, in steps of equal time.
struct CurveSamples {
    std::vector<double> values;
    double least;     ///< The least of the values, at most 0.
    double greatest;  ///< The greatest of the values, at least 1.

    explicit CurveSamples(EnumEasing type);
};

/// The plot of a curve, a dot that moves along it, and a ball beside it at the height of the value.
/// The plot is drawn once per size and colour; a moving dot redraws only dot and ball.
class CurvePlot : public Gtk::Widget {
  public:
    explicit CurvePlot(EnumEasing type);

    /// share: time passed, 0 to 1; value: 0 at the start, 1 at the destination.
    void setPlace(double share, double value);

  protected:
    void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                       int& minimumBaseline, int& naturalBaseline) const override;

  private:
    struct Release {
        void operator()(GskRenderNode* node) const;
    };

    void drawPicture();
    double xOf(double share) const;
    double yOf(double value) const;

    CurveSamples samples_;
    double share_ = 0;
    double value_ = 0;
    std::unique_ptr<GskRenderNode, Release> picture_;
    // The size and colour that picture_ was drawn with.
    int width_ = 0;
    int height_ = 0;
    Gdk::RGBA color_;
};

}  // namespace orvalo
