#include "SelectionDrop.h"

#include "removal/CleanItem.h"
#include "removal/CleanQueue.h"

namespace SelectionDrop {

bool drop(CleanQueue &queue, const QStringList &payloads)
{
    QList<CleanItem> items;
    for (const QString &payload : payloads)
        if (const auto item = CleanItem::fromJson(payload.toUtf8()))
            items << *item;
    queue.add(items);
    return !items.isEmpty();
}

} // namespace SelectionDrop
