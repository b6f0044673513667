#include "SidebarItem.h"

#include <QCoreApplication>

namespace {

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
