#include "Risk.h"

namespace {
constexpr std::array<const char *, 5> levelNames = {"safe", "normal", "caution", "danger", "locked"};
} // namespace

QString Risk::Level::name() const { return QString::fromLatin1(levelNames[m_value]); }

std::optional<Risk::Level> Risk::Level::fromName(QStringView name)
{
    for (Level level : allCases)
        if (name == QLatin1String(levelNames[level]))
            return level;
    return std::nullopt;
}
