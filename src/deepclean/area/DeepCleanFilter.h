// The filter pills of the Deep Clean area: which locations and whether the
// build artefacts show. A value; any thread.

#pragma once

#include "deepclean/JunkLocation.h"

#include <QString>

#include <array>
#include <optional>

class DeepCleanFilter
{
public:
    enum Value : quint8 { all, safe, caution, build };
    constexpr DeepCleanFilter(Value value = all) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<DeepCleanFilter, 4> allCases;

    QString rawValue() const; // "all", "safe", "caution", "build"
    static std::optional<DeepCleanFilter> fromRawValue(QStringView raw);
    QString title() const; // "All", "Safe", "Look first", "Build junk"

    // All: every location; Safe and Look first: those of that risk; Build junk: none.
    bool showsLocation(JunkLocation::Risk risk) const;
    // Every filter but Look first shows the artefacts.
    bool showsArtifacts() const { return m_value != caution; }

private:
    Value m_value;
};

inline constexpr std::array<DeepCleanFilter, 4> DeepCleanFilter::allCases = {all, safe, caution, build};
