// The filter chips of the Space explorer's toolbar: which tiles of a folder
// are shown. A value; usable from any thread.

#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

class ExplorerFilter
{
public:
    enum Value : quint8 { all, folders, files, stained, bloated, selected };
    constexpr ExplorerFilter(Value value = all) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<ExplorerFilter, 6> allCases;
    QString rawValue() const;
    static std::optional<ExplorerFilter> fromRawValue(QStringView raw);
    QString title() const; // "All", "Folders", "Files", "Grime", "Heavy", "Selected"

private:
    Value m_value;
};

inline constexpr std::array<ExplorerFilter, 6> ExplorerFilter::allCases = {
    all, folders, files, stained, bloated, selected,
};
