#pragma once

#include <gtkmm/grid.h>
#include <gtkmm/togglebutton.h>

#include <cstddef>
#include <vector>

namespace orvalo {

/// Tiles in columns and rows, of which one is chosen. To Tab they are one stop, at the chosen tile;
/// from there the arrow keys lead from tile to tile, and Home and End to the ends of a row.
class TileGrid : public Gtk::Grid {
  public:
    TileGrid();

    /// Adds a tile that is in no group yet, chosen where it is active.
    void add(Gtk::ToggleButton& tile, int column, int row);

  private:
    struct Tile {
        Gtk::ToggleButton* button;
        int column;
        int row;
    };

    bool press(guint key);
    /// On to the next tile in that direction, or to the last one there.
    void go(int columns, int rows, bool toTheLast = false);
    /// Makes it the tile at which Tab stops.
    void stopAt(std::size_t tile);
    void stopAtChosen();

    std::vector<Tile> tiles_;
    std::size_t stop_ = 0;  ///< Where Tab stops.
};

}  // namespace orvalo
