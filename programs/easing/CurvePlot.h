#pragma once

#include <gtkmm/widget.h>

#include <memory>

#include "programs/easing/CurveSamples.h"

using GskRenderNode = struct _GskRenderNode;  // NOLINT(bugprone-reserved-identifier): GSK's own.

namespace orvalo {

/// The picture of a curve, with a dot that goes along it and a ball beside it that moves as the
/// value does. The picture is drawn once for a size and colour; a moving dot costs itself alone.
class CurvePlot : public Gtk::Widget {
  public:
    explicit CurvePlot(EnumEasing type);

    /// share: of the way in time, 0 to 1; value: 0 at the start, 1 at the destination.
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
    int width_ = 0;  ///< Of the picture, as the height.
    int height_ = 0;
    Gdk::RGBA color_;  ///< Of the picture.
};

}  // namespace orvalo
