#include "Area.h"
#include "SidebarItem.h"

#include <QCoreApplication>

namespace {

struct AreaInfo {
    const char *raw;
    const char *title;
};

constexpr std::array<AreaInfo, 3> areaInfos = {{
    {"space", QT_TRANSLATE_NOOP("Area", "Space")},
    {"files", QT_TRANSLATE_NOOP("Area", "Files")},
    {"steam", QT_TRANSLATE_NOOP("Area", "Deep Clean")},
}};

} // namespace

QString Area::rawValue() const { return QString::fromLatin1(areaInfos[m_value].raw); }

std::optional<Area> Area::fromRawValue(QStringView raw)
{
    for (Area a : allCases)
        if (raw == QLatin1String(areaInfos[a].raw))
            return a;
    return std::nullopt;
}

QString Area::title() const { return QCoreApplication::translate("Area", areaInfos[m_value].title); }

QList<SidebarItem> Area::items() const
{
    QList<SidebarItem> out;
    for (SidebarItem item : SidebarItem::allCases)
        if (item.area() == m_value)
            out.append(item);
    return out;
}
