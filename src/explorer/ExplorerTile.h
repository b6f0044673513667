// One tile of the Space explorer's grid: a placeholder or an entry, with its
// condition and a seed that varies its look. A value; made and read on the
// main thread.

#pragma once

#include "ExplorerEntry.h"
#include "PlaceholderKind.h"

#include <QByteArray>
#include <QString>

#include <variant>

// The seed is 0...996.
struct ExplorerTile {
    enum class Condition : quint8 { clean, stained, bloated };

    std::variant<PlaceholderKind, ExplorerEntry> content;
    Condition condition = Condition::clean;
    int seed = 0;

    bool isPlaceholder() const { return std::holds_alternative<PlaceholderKind>(content); }
    const ExplorerEntry *entry() const { return std::get_if<ExplorerEntry>(&content); }
    PlaceholderKind placeholder() const
    {
        const auto *kind = std::get_if<PlaceholderKind>(&content);
        return kind ? *kind : PlaceholderKind(PlaceholderKind::folder);
    }
    // The entry's id, or "placeholder-" + seed.
    QByteArray id() const;
    qint64 size() const { return entry() ? entry()->size : 0; }

    static QString conditionName(Condition condition); // "clean", "stained", "bloated"
};
