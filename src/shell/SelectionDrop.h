// SelectionDrop: dragged items coming back from their JSON into the selection
// queue. Plain functions owning no state; called on the GUI thread, where the
// queue lives.
#pragma once

#include <QStringList>

class CleanQueue;

// A selection as it travels in a drag, and dropping it.
namespace SelectionDrop {
// Adds every item that decodes; true if any did (even when already queued).
bool drop(CleanQueue &queue, const QStringList &payloads);
} // namespace SelectionDrop
