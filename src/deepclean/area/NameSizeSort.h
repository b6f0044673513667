// The two orders of the Deep Clean area's "Sort" menu. A value; any thread.

#pragma once

#include <QString>

#include <array>
#include <optional>

class NameSizeSort
{
public:
    enum Value : quint8 { size, name };
    constexpr NameSizeSort(Value value = size) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<NameSizeSort, 2> allCases;

    QString rawValue() const; // "size", "name"
    static std::optional<NameSizeSort> fromRawValue(QStringView raw);
    QString title() const; // "Size", "Name"

private:
    Value m_value;
};

inline constexpr std::array<NameSizeSort, 2> NameSizeSort::allCases = {size, name};
