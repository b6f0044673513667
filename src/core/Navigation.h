#pragma once

#include <QList>
#include <QString>

#include <array>
#include <optional>

class SidebarItem;

// The three top-level areas of the window.
class Area
{
public:
    enum Value : quint8 { space, files, steam };

    constexpr Area(Value value = space) : m_value(value) {}
    constexpr operator Value() const { return m_value; }

    static const std::array<Area, 3> allCases;

    QString rawValue() const;
    static std::optional<Area> fromRawValue(QStringView raw);
    QString title() const;
    // The sidebar items of this area, in SidebarItem::allCases order.
    QList<SidebarItem> items() const;

private:
    Value m_value;
};

// The five navigation items; each belongs to one area.
class SidebarItem
{
public:
    enum Value : quint8 { overview, largest, old, duplicates, cleanup };

    constexpr SidebarItem(Value value = overview) : m_value(value) {}
    constexpr operator Value() const { return m_value; }

    static const std::array<SidebarItem, 5> allCases;

    QString rawValue() const;
    static std::optional<SidebarItem> fromRawValue(QStringView raw);
    QString title() const;
    QString caption() const;
    Area area() const;

private:
    Value m_value;
};

inline constexpr std::array<Area, 3> Area::allCases = {space, files, steam};
inline constexpr std::array<SidebarItem, 5> SidebarItem::allCases = {overview, largest, old, duplicates, cleanup};
