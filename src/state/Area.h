#pragma once

// The three top-level areas of the window and their titles. A plain value,
// usable on any thread.

#include <QList>
#include <QString>

#include <array>
#include <optional>

class SidebarItem;

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

inline constexpr std::array<Area, 3> Area::allCases = {space, files, steam};
