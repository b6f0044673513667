#include "ExplorerLayout.h"

#include <QCoreApplication>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

} // namespace

QString ExplorerLayout::rawValue() const { return m_value == list ? QStringLiteral("list") : QStringLiteral("icons"); }

std::optional<ExplorerLayout> ExplorerLayout::fromRawValue(QStringView raw)
{
    if (raw == u"icons")
        return ExplorerLayout(icons);
    if (raw == u"list")
        return ExplorerLayout(list);
    return std::nullopt;
}

QString ExplorerLayout::title() const
{
    return m_value == list ? explorerText(QT_TRANSLATE_NOOP("Explorer", "List"))
                           : explorerText(QT_TRANSLATE_NOOP("Explorer", "Icons"));
}
