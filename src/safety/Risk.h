// The verdict on one path: how much would be lost by removing it, a short title
// for a badge and one sentence that says why. Made by RiskCatalog::assess. A
// value; any thread.

#pragma once

#include <QString>

#include <array>
#include <optional>

// The default verdict (`normal`, empty title and sentence) means nothing special
// is known about the path: callers show no badge for it.
struct Risk {
    // How bad removing the item would be. Levels compare by raw value: the higher,
    // the worse (`Risk::Level::danger > Risk::Level::caution`).
    class Level
    {
    public:
        enum Value : quint8 {
            safe,    // rebuilt automatically
            normal,  // nothing special is known; no badge
            caution, // look first
            danger,  // holds data that can't be rebuilt
            locked,  // never removed as an item
        };

        constexpr Level(Value value = normal) : m_value(value) {}
        constexpr operator Value() const { return m_value; }

        static const std::array<Level, 5> allCases;

        // 0 for `safe` up to 4 for `locked`.
        constexpr int rawValue() const { return m_value; }
        static constexpr std::optional<Level> fromRawValue(int raw)
        {
            if (raw < safe || raw > locked)
                return std::nullopt;
            return Level(Value(raw));
        }

        // The case's name as text ("safe", "normal", "caution", "danger",
        // "locked"), for QML, JSON and the command line.
        QString name() const;
        static std::optional<Level> fromName(QStringView name);

    private:
        Value m_value;
    };

    Level level = Level::normal;
    QString title; // the badge's words; empty for the default verdict
    QString why;   // one sentence; empty for the default verdict

    bool hasBadge() const { return !title.isEmpty(); }
    friend bool operator==(const Risk &, const Risk &) = default;
};

inline constexpr std::array<Risk::Level, 5> Risk::Level::allCases = {
    Risk::Level::safe, Risk::Level::normal, Risk::Level::caution, Risk::Level::danger, Risk::Level::locked,
};
