// A lower size limit chosen from six fixed steps, in decimal bytes. Used as the
// smallest size kept by the duplicate shelf. A value; any thread.

#pragma once

#include <QtGlobal>

#include <array>
#include <optional>

class SizeThreshold
{
public:
    enum Value : quint8 { any, mb10, mb100, mb500, gb1, gb5 };

    constexpr SizeThreshold(Value value = any) : m_value(value) {}
    constexpr operator Value() const { return m_value; }

    static const std::array<SizeThreshold, 6> allCases;

    // The limit in bytes.
    constexpr qint64 rawValue() const { return bytes[m_value]; }
    // Nothing for a number that is not one of the six limits.
    static constexpr std::optional<SizeThreshold> fromRawValue(qint64 raw)
    {
        for (quint8 i = 0; i < bytes.size(); ++i)
            if (bytes[i] == raw)
                return SizeThreshold(Value(i));
        return std::nullopt;
    }

private:
    static constexpr std::array<qint64, 6> bytes = {0, 10000000, 100000000, 500000000, 1000000000, 5000000000};
    Value m_value;
};

inline constexpr std::array<SizeThreshold, 6> SizeThreshold::allCases = {
    SizeThreshold::any,   SizeThreshold::mb10, SizeThreshold::mb100,
    SizeThreshold::mb500, SizeThreshold::gb1,  SizeThreshold::gb5,
};
