// The sort orders of the Space explorer's toolbar menu, and the sorting of a
// tile list by one of them. A value; usable from any thread.

#pragma once

#include "ExplorerTile.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

class ExplorerSort
{
public:
    enum Value : quint8 { size, name, kind };
    constexpr ExplorerSort(Value value = size) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<ExplorerSort, 3> allCases;
    QString rawValue() const;
    static std::optional<ExplorerSort> fromRawValue(QStringView raw);
    QString title() const; // "Size", "Name", "Kind"

    // True when tile a goes before tile b; false if either is a placeholder.
    // The name order ignores case and compares runs of digits by value.
    bool order(const ExplorerTile &a, const ExplorerTile &b) const;
    // Sorts stably by order().
    void sortTiles(QList<ExplorerTile> &tiles) const;

    // The text the kind order groups by: empty for a folder, the category title,
    // or "~" without category.
    static QString kindText(const ExplorerEntry &entry);

private:
    Value m_value;
};

inline constexpr std::array<ExplorerSort, 3> ExplorerSort::allCases = {size, name, kind};
