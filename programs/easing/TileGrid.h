#pragma once

#include <gtkmm/grid.h>
#include <gtkmm/togglebutton.h>

#include <cstddef>
#include <vector>

namespace orvalo {

/// Tiles in columns and rows, of which one is chosen. Tab stops once, at the chosen tile; from
/// there the arrow keys move from tile to tile, and Home and End to the ends of a row.
class TileGrid : public Gtk::Grid {
  public:
    TileGrid();

    /// Adds a tile that is not in a group yet. An active tile is the chosen one.
    void add(Gtk::ToggleButton& tile, int column, int row);

  private:
    struct Tile {
        Gtk::ToggleButton* button;
        int column;
        int row;
    };

    bool press(guint key);
    /// Moves to the next tile in that direction, or to the last one.
    void moveTabStop(int columns, int rows, bool toTheLast = false);
    void setTabStop(std::size_t tile);
    void setTabStopToChosen();

    std::vector<Tile> tiles_;
    std::size_t tabStop_ = 0;  ///< Index of the only tile that takes the focus.
};

}  // namespace orvalo
