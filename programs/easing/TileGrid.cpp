#include "programs/easing/TileGrid.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerfocus.h>
#include <gtkmm/eventcontrollerkey.h>

#include <utility>

namespace orvalo {

TileGrid::TileGrid() {
    const auto keys = Gtk::EventControllerKey::create();
    // Before the window handles the arrow keys itself.
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint /*code*/, Gdk::ModifierType held) {
            using enum Gdk::ModifierType;
            return (held & (CONTROL_MASK | ALT_MASK)) == Gdk::ModifierType() && press(key);
        },
        false);
    add_controller(keys);
    const auto focus = Gtk::EventControllerFocus::create();
    focus->signal_leave().connect([this] { setTabStopToChosen(); });
    add_controller(focus);
}

void TileGrid::add(Gtk::ToggleButton& tile, int column, int row) {
    if (!tiles_.empty()) {
        tile.set_group(*tiles_.front().button);
    }
    tile.set_focusable(tiles_.empty());
    tile.signal_toggled().connect([this, &tile] {
        if (tile.get_active()) {
            setTabStopToChosen();
            tile.grab_focus();
        }
    });
    tiles_.push_back({&tile, column, row});
    attach(tile, column, row);
    setTabStopToChosen();
}

bool TileGrid::press(guint key) {
    switch (key) {
        case GDK_KEY_Left:
        case GDK_KEY_KP_Left:
            moveTabStop(-1, 0);
            return true;
        case GDK_KEY_Right:
        case GDK_KEY_KP_Right:
            moveTabStop(1, 0);
            return true;
        case GDK_KEY_Up:
        case GDK_KEY_KP_Up:
            moveTabStop(0, -1);
            return true;
        case GDK_KEY_Down:
        case GDK_KEY_KP_Down:
            moveTabStop(0, 1);
            return true;
        case GDK_KEY_Home:
        case GDK_KEY_KP_Home:
            moveTabStop(-1, 0, true);
            return true;
        case GDK_KEY_End:
        case GDK_KEY_KP_End:
            moveTabStop(1, 0, true);
            return true;
        default:
            return false;
    }
}

void TileGrid::moveTabStop(int columns, int rows, bool toTheLast) {
    const auto& from = tiles_[tabStop_];
    auto best = tabStop_;
    int bestDistance = 0;
    for (std::size_t place = 0; place < tiles_.size(); ++place) {
        const auto& tile = tiles_[place];
        const bool isInLine = columns != 0 ? tile.row == from.row : tile.column == from.column;
        const int distance = columns * (tile.column - from.column) + rows * (tile.row - from.row);
        if (isInLine && distance > 0 &&
            (bestDistance == 0 || (distance > bestDistance) == toTheLast)) {
            best = place;
            bestDistance = distance;
        }
    }
    setTabStop(best);
}

void TileGrid::setTabStop(std::size_t tile) {
    const auto last = std::exchange(tabStop_, tile);
    if (last == tile) {
        return;
    }
    tiles_[tile].button->set_focusable();
    if (tiles_[last].button->has_focus()) {
        tiles_[tile].button->grab_focus();
    }
    tiles_[last].button->set_focusable(false);
}

void TileGrid::setTabStopToChosen() {
    for (std::size_t place = 0; place < tiles_.size(); ++place) {
        if (tiles_[place].button->get_active()) {
            setTabStop(place);
        }
    }
}

}  // namespace orvalo
