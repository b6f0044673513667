// A pending removal: a flat list of paths, handed to the worker by copy. Made
// on the main thread; its onComplete runs there once, after the removal.

#pragma once

#include "DeletionItem.h"
#include "ReviewedItem.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

struct DeletionRequest {
    QUuid id = QUuid::createUuid();
    QString title; // empty when made from the selection
    QList<DeletionItem> items;
    qint64 estimatedSize = 0; // sum of the selected items' sizes
    // Runs once on the main thread after the removal, with the paths that went.
    std::function<void(const QByteArrayList &removedPaths)> onComplete;
    // Rows to show instead of `items`; absent when made from the selection.
    std::optional<QList<DeletionItem>> summary;
    // The selection ids this request consumes.
    QSet<QByteArray> queueIDs;
    // Each item and its folder as they were at the review; checked again right
    // before the item goes.
    ReviewedItems reviewed;

    // How many items name a path that the safety guard keeps.
    int protectedCount() const;
};
