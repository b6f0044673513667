#include "TileKeys.h"

#include <algorithm>

namespace TileKeys {

Outcome press(int key, Qt::KeyboardModifiers modifiers, int row, int count, int columns)
{
    const Qt::KeyboardModifiers mods = modifiers & ~Qt::KeypadModifier;
    if (key == Qt::Key_Left && mods == Qt::AltModifier)
        return {Action::back, row};
    // Other chords belong to the window's shortcuts.
    if (mods & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return {};
    switch (key) {
    case Qt::Key_Escape:
    case Qt::Key_Backspace:
        return {Action::back, row};
    default:
        break;
    }
    if (count <= 0 || row < 0 || row >= count)
        return {};
    const int across = std::max(1, columns);
    const auto to = [](int target) { return Outcome{Action::move, target}; };
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return {Action::open, row};
    case Qt::Key_Space:
        return {Action::toggle, row};
    case Qt::Key_Left:
        return to(std::max(0, row - 1));
    case Qt::Key_Right:
        return to(std::min(count - 1, row + 1));
    case Qt::Key_Up:
        return to(row - across >= 0 ? row - across : row);
    case Qt::Key_Down:
        if (row + across < count)
            return to(row + across);
        // From a line above a short last line: its last tile.
        return to(row / across < (count - 1) / across ? count - 1 : row);
    case Qt::Key_Home:
        return to(0);
    case Qt::Key_End:
        return to(count - 1);
    default:
        return {};
    }
}

} // namespace TileKeys
