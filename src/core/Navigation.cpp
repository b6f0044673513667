#include "Navigation.h"

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

struct ItemInfo {
    const char *raw;
    const char *title;
    const char *caption;
    Area::Value area;
};

constexpr std::array<ItemInfo, 5> itemInfos = {{
    {"overview", QT_TRANSLATE_NOOP("SidebarItem", "Space"), QT_TRANSLATE_NOOP("SidebarItem", "Where the weight lives"),
     Area::space},
    {"largest", QT_TRANSLATE_NOOP("SidebarItem", "Biggest"),
     QT_TRANSLATE_NOOP("SidebarItem", "The heaviest files, ranked"), Area::files},
    {"old", QT_TRANSLATE_NOOP("SidebarItem", "Forgotten"), QT_TRANSLATE_NOOP("SidebarItem", "Big files nobody opens"),
     Area::files},
    {"duplicates", QT_TRANSLATE_NOOP("SidebarItem", "Twins"), QT_TRANSLATE_NOOP("SidebarItem", "Identical copies"),
     Area::files},
    {"cleanup", QT_TRANSLATE_NOOP("SidebarItem", "Deep Clean"),
     QT_TRANSLATE_NOOP("SidebarItem", "Caches, leftovers and build junk that are safe to sorvelise"), Area::steam},
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

QString SidebarItem::rawValue() const { return QString::fromLatin1(itemInfos[m_value].raw); }

std::optional<SidebarItem> SidebarItem::fromRawValue(QStringView raw)
{
    for (SidebarItem item : allCases)
        if (raw == QLatin1String(itemInfos[item].raw))
            return item;
    return std::nullopt;
}

QString SidebarItem::title() const { return QCoreApplication::translate("SidebarItem", itemInfos[m_value].title); }

QString SidebarItem::caption() const { return QCoreApplication::translate("SidebarItem", itemInfos[m_value].caption); }

Area SidebarItem::area() const { return itemInfos[m_value].area; }
