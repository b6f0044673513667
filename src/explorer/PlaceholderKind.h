// What a placeholder tile stands for, and the welcome picture made of them.
// Constant values; usable from any thread.

#pragma once

#include <QByteArray>
#include <QSet>

#include <array>

// Each kind shows the icon of a made-up path.
class PlaceholderKind
{
public:
    enum Value : quint8 { folder, document, text, movie, image, archive, app, diskImage };
    constexpr PlaceholderKind(Value value = folder) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<PlaceholderKind, 8> allCases;
    QByteArray path() const; // "/placeholder", "/placeholder.pdf", ...

private:
    Value m_value;
};

inline constexpr std::array<PlaceholderKind, 8> PlaceholderKind::allCases = {
    folder, document, text, movie, image, archive, app, diskImage,
};

// The welcome picture: 24 kinds, and which positions are stained or bloated.
namespace Placeholders {
extern const std::array<PlaceholderKind, 24> pattern;
extern const QSet<int> stained;
extern const QSet<int> bloated;
} // namespace Placeholders
