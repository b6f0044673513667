// What a key does to the tile that holds the keyboard focus in the Space
// explorer: move to another tile, open it, select it, or go up a level. A plain
// function of the key and where the tile stands; SpaceModel carries it out.

#pragma once

#include <QtCore/qnamespace.h>

namespace TileKeys {

enum class Action : quint8 {
    none,   // not a key of the tiles: it goes on to the window
    move,   // focus the tile at `row` (perhaps the same one, at an edge)
    open,   // Return or Enter: what a plain click does
    toggle, // Space: select or deselect
    back,   // Escape, Backspace or Alt+Left: up one level
};

struct Outcome {
    Action action = Action::none;
    int row = -1;
};

// The key `key` with `modifiers` pressed on tile `row` of `count`, laid out
// `columns` to a line (1 in the list layout). Left and Right go to the previous
// and next tile in reading order; Up and Down a line up or down (to the last
// tile from a short last line); Home and End to the first and the last. An
// arrow at the edge stays where it is, and is still the tiles' key.
Outcome press(int key, Qt::KeyboardModifiers modifiers, int row, int count, int columns);

} // namespace TileKeys
