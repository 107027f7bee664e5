#include "programs/easing/CurvesPage.h"

#include <gtkmm/label.h>

#include <array>

#include "animation/Animator.h"
#include "animation/EasingCurve.h"
#include "programs/easing/Accessible.h"
#include "programs/easing/CurvePlot.h"
#include "programs/easing/TileGrid.h"

namespace orvalo {

namespace {

constexpr std::array<const char*, 4> kWays{"In", "Out", "In-Out", "Out-In"};
constexpr std::array<const char*, 10> kFamilies{"Quad", "Cubic", "Quart",   "Quint", "Sine",
                                                "Expo", "Circ",  "Elastic", "Back",  "Bounce"};

Gtk::Label& header(const Glib::ustring& text) {
    auto& label = *Gtk::make_managed<Gtk::Label>(text);
    label.add_css_class("caption-heading");
    label.add_css_class("dim-label");
    return label;
}

}  // namespace

CurvesPage::CurvesPage() {
    auto& grid = *Gtk::make_managed<TileGrid>();
    grid.set_row_spacing(6);
    grid.set_column_spacing(6);
    addHeaders(grid);
    addTile(grid, EnumEasing::EASING_easeNone, 1, 1);
    for (std::size_t family = 0; family < kFamilies.size(); ++family) {
        for (std::size_t way = 0; way < kWays.size(); ++way) {
            const auto number = 1 + family * kWays.size() + way;
            addTile(grid, static_cast<EnumEasing>(number), static_cast<int>(family) + 2,
                    static_cast<int>(way) + 1);
        }
    }
    append(grid);
    stack_->onFinished = [this](const auto& /*stack*/) { setPlaying(false); };
}

CurvesPage::~CurvesPage() {
    stack_->onFinished = nullptr;
    stack_->stop();
}

void CurvesPage::addHeaders(Gtk::Grid& grid) {
    grid.attach(header("None"), 1, 0);
    for (std::size_t family = 0; family < kFamilies.size(); ++family) {
        grid.attach(header(kFamilies.at(family)), static_cast<int>(family) + 2, 0);
    }
    for (std::size_t way = 0; way < kWays.size(); ++way) {
        auto& label = header(kWays.at(way));
        label.set_xalign(1);
        grid.attach(label, 0, static_cast<int>(way) + 1);
    }
}

void CurvesPage::addTile(TileGrid& grid, EnumEasing type, int column, int row) {
    auto& plot = *Gtk::make_managed<CurvePlot>(type);
    auto& button = *Gtk::make_managed<Gtk::ToggleButton>();
    button.add_css_class("tile");
    button.set_child(plot);
    button.set_tooltip_text(easingName(type));
    setAccessibleName(button, easingName(type));
    button.set_active(type == chosen_);
    button.signal_toggled().connect([this, &button, type] {
        if (button.get_active()) {
            chosen_ = type;
        }
    });
    grid.add(button, column, row);

    auto tile = std::make_unique<Tile>();
    tile->type = type;
    tile->plot = &plot;
    tile->animator = std::make_shared<Animator>();
    tile->animator->onAnimation = [counted = tile.get()](const auto& /*animator*/,
                                                         float /*value*/) { ++counted->step; };
    tiles_.push_back(std::move(tile));
}

void CurvesPage::setup(const Pace& pace) {
    frames_ = pace.frames();
    for (const auto& tile : tiles_) {
        tile->step = 0;
        tile->animator->setup(0.0F, 1.0F, frames_, static_cast<float>(pace.interval), tile->type);
    }
}

void CurvesPage::play(const Pace& pace) {
    stack_->stop();
    setup(pace);
    for (const auto& tile : tiles_) {
        stack_->add(tile->animator);
    }
    stack_->interval = static_cast<float>(pace.interval);
    stack_->start();
    setPlaying(true);
}

void CurvesPage::stop() {
    stack_->stop();
    setPlaying(false);
}

void CurvesPage::showEnd(const Pace& pace) {
    stop();
    setup(pace);
    for (const auto& tile : tiles_) {
        tile->animator->undo();
        tile->step = frames_;
    }
    redraw();
}

void CurvesPage::redraw() {
    for (const auto& tile : tiles_) {
        tile->plot->setPlace(static_cast<double>(tile->step) / static_cast<double>(frames_),
                             static_cast<double>(tile->animator->getValue()));
    }
}

}  // namespace orvalo
