// An item of a removal as it was when the user reviewed it: the real folder it
// lay in and, when it existed then, the item itself. The map from each item's
// path to it travels with the request to the worker. Values; any thread.

#pragma once

#include "FolderIdentity.h"
#include "ItemIdentity.h"

#include <QByteArray>
#include <QHash>

#include <optional>

struct ReviewedItem {
    FolderIdentity folder;
    // Absent when the item was not there at the review.
    std::optional<ItemIdentity> item;
    friend bool operator==(const ReviewedItem &, const ReviewedItem &) = default;
};

// Item path -> how it was at the review.
using ReviewedItems = QHash<QByteArray, ReviewedItem>;
