#include "DeepCleanFilter.h"

#include <QCoreApplication>

QString DeepCleanFilter::rawValue() const
{
    static const char *const raw[] = {"all", "safe", "caution", "build"};
    return QString::fromLatin1(raw[m_value]);
}

std::optional<DeepCleanFilter> DeepCleanFilter::fromRawValue(QStringView raw)
{
    for (const DeepCleanFilter filter : allCases)
        if (filter.rawValue() == raw)
            return filter;
    return std::nullopt;
}

QString DeepCleanFilter::title() const
{
    static const char *const titles[] = {
        QT_TRANSLATE_NOOP("DeepClean", "All"),
        QT_TRANSLATE_NOOP("DeepClean", "Safe"),
        QT_TRANSLATE_NOOP("DeepClean", "Look first"),
        QT_TRANSLATE_NOOP("DeepClean", "Build junk"),
    };
    return QCoreApplication::translate("DeepClean", titles[m_value]);
}

bool DeepCleanFilter::showsLocation(JunkLocation::Risk risk) const
{
    switch (m_value) {
    case all:
        return true;
    case safe:
        return risk == JunkLocation::Risk::safe;
    case caution:
        return risk == JunkLocation::Risk::caution;
    case build:
        return false;
    }
    return false;
}
