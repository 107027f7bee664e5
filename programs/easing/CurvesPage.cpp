#include "programs/easing/CurvesPage.h"

#include <gdkmm/clipboard.h>
#include <gtk/gtk.h>
#include <gtkmm/overlay.h>

#include <array>

#include "animation/Animator.h"
#include "animation/EasingCurve.h"
#include "animation/EasingFormula.h"
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

/// Makes the plot the button's child, with a mark where its curve leaves room.
void addMark(Gtk::Button& button, Gtk::Widget& plot) {
    auto& mark = *Gtk::make_managed<Gtk::Label>("odd");
    mark.add_css_class("odd");
    mark.set_halign(Gtk::Align::END);
    mark.set_valign(Gtk::Align::END);
    auto& overlay = *Gtk::make_managed<Gtk::Overlay>();
    overlay.set_child(plot);
    overlay.add_overlay(mark);
    button.set_child(overlay);
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
    addDetails();
    choose(chosen_);
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
    button.set_tooltip_text(easingName(type));
    setAccessibleName(button, easingName(type));
    const auto deviation = easingDeviation(type);
    if (deviation.empty()) {
        button.set_child(plot);
    } else {
        addMark(button, plot);
        button.set_tooltip_text(easingName(type) + ", odd on purpose. " + deviation);
        gtk_accessible_update_property(GTK_ACCESSIBLE(button.gobj()),
                                       GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, deviation.c_str(), -1);
    }
    button.set_active(type == chosen_);
    button.signal_toggled().connect([this, &button, type] {
        if (button.get_active()) {
            choose(type);
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

void CurvesPage::addDetails() {
    auto& title = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
    name_.add_css_class("heading");
    note_.add_css_class("dim-label");
    note_.set_ellipsize(Pango::EllipsizeMode::END);
    title.append(name_);
    title.append(note_);
    formula_.add_css_class("monospace");
    formula_.set_xalign(0);
    formula_.set_yalign(0);
    formula_.set_wrap();
    formula_.set_lines(3);
    formula_.set_ellipsize(Pango::EllipsizeMode::END);
    // Room for three lines, so that the plots keep their size.
    formula_.set_size_request(-1, 54);
    auto& texts = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    texts.set_hexpand();
    texts.append(title);
    texts.append(formula_);
    auto& row = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    row.append(texts);
    addCopyButton(row, "Copy _Name", easingName);
    addCopyButton(row, "Copy _Formula", easingFormula);
    append(row);
}

void CurvesPage::addCopyButton(Gtk::Box& row, const char* label,
                               std::string (*textOf)(EnumEasing)) {
    auto& button = *Gtk::make_managed<Gtk::Button>(label, true);
    nameByLabel(button);
    button.set_valign(Gtk::Align::CENTER);
    button.signal_clicked().connect([this, textOf] {
        const auto text = textOf(chosen_);
        get_clipboard()->set_text(text);
        note_.set_text(text == easingName(chosen_) ? "The name is copied."
                                                   : "The formula is copied.");
    });
    row.append(button);
}

void CurvesPage::choose(EnumEasing type) {
    chosen_ = type;
    const auto deviation = easingDeviation(type);
    name_.set_text(easingName(type));
    note_.set_text(deviation.empty() ? "" : "Odd on purpose. " + deviation);
    formula_.set_text(easingFormula(type));
    formula_.set_tooltip_text(easingFormula(type));
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
