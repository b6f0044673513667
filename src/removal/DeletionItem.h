// One path of a removal: its exact bytes, the size it frees if known and
// whether a folder that will not go whole is emptied instead. A value; any thread.

#pragma once

#include <QByteArray>

#include <optional>

struct DeletionItem {
    QByteArray path; // absolute, exact bytes
    // Bytes this path frees if known beforehand; absent means it is measured
    // right before it goes.
    std::optional<qint64> size;
    // When the path will not go whole and is a folder, its contents go one by
    // one instead.
    bool clearInsideOnFailure = false;

    friend bool operator==(const DeletionItem &, const DeletionItem &) = default;
};
