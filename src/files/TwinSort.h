// The orders of the Twins shelf's groups. A value; any thread.

#pragma once

#include "duplicates/DuplicateGroup.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

class TwinSort
{
public:
    enum Value : quint8 { extra, copies, name };
    constexpr TwinSort(Value value = extra) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<TwinSort, 3> allCases;

    QString rawValue() const; // "extra", "copies", "name"
    static std::optional<TwinSort> fromRawValue(QStringView raw);
    QString title() const; // "Wasted space", "Most copies", "Name"

    // Stable: most reclaimable first; most files first, then most reclaimable;
    // or by the name of each group's first file.
    void sort(std::vector<const DuplicateGroup *> &groups) const;

private:
    Value m_value;
};

inline constexpr std::array<TwinSort, 3> TwinSort::allCases = {extra, copies, name};
