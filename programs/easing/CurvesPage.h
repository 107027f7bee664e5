#pragma once

#include <gtkmm/grid.h>
#include <gtkmm/label.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "animation/AnimatorStack.h"
#include "animation/EnumEasing.h"
#include "programs/easing/DemoPage.h"

namespace orvalo {

class Animator;
class CurvePlot;
class TileGrid;

/// All curves side by side, with one animator each in one stack. The name and the formula of the
/// chosen one can be copied, and it is used on the Groups page.
class CurvesPage : public DemoPage {
  public:
    CurvesPage();
    ~CurvesPage() override;

    void play(const Pace& pace) override;
    void stop() override;
    void showEnd(const Pace& pace) override;

    EnumEasing chosen() const { return chosen_; }

  protected:
    void redraw() override;

  private:
    struct Tile {
        EnumEasing type;
        CurvePlot* plot;
        std::shared_ptr<Animator> animator;
        std::int64_t step = 0;  ///< Frames that the animator has computed in this run.
    };

    static void addHeaders(Gtk::Grid& grid);
    void addTile(TileGrid& grid, EnumEasing type, int column, int row);
    void addDetails();
    void addCopyButton(Gtk::Box& row, const char* label, std::string (*textOf)(EnumEasing));
    void choose(EnumEasing type);
    void setup(const Pace& pace);

    std::vector<std::unique_ptr<Tile>> tiles_;
    EnumEasing chosen_ = EnumEasing::EASING_easeInOutCubic;
    Gtk::Label name_;
    Gtk::Label note_;  ///< How the chosen curve deviates, or what was copied.
    Gtk::Label formula_;
    std::int64_t frames_ = 1;
    std::shared_ptr<AnimatorStack> stack_ = std::make_shared<AnimatorStack>();
};

}  // namespace orvalo
