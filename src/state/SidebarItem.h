#pragma once

// The five navigation items of the window, each in one Area, with their
// titles and captions. A plain value, usable on any thread.

#include "Area.h"

#include <QString>

#include <array>
#include <optional>

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

inline constexpr std::array<SidebarItem, 5> SidebarItem::allCases = {overview, largest, old, duplicates, cleanup};
