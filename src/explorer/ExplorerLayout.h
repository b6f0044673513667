// Icons or list: how the Space explorer lays out its tiles; kept under the
// preference "spaceLayout". A value; usable from any thread.

#pragma once

#include <QString>
#include <QStringView>

#include <optional>

class ExplorerLayout
{
public:
    enum Value : quint8 { icons, list };
    constexpr ExplorerLayout(Value value = icons) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    QString rawValue() const;
    static std::optional<ExplorerLayout> fromRawValue(QStringView raw);
    QString title() const; // "Icons", "List"

private:
    Value m_value;
};
