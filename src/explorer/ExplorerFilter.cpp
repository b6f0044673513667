#include "ExplorerFilter.h"

#include <QCoreApplication>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

} // namespace

QString ExplorerFilter::rawValue() const
{
    static const char *const names[] = {"all", "folders", "files", "stained", "bloated", "selected"};
    return QString::fromLatin1(names[m_value]);
}

std::optional<ExplorerFilter> ExplorerFilter::fromRawValue(QStringView raw)
{
    for (const ExplorerFilter f : allCases)
        if (f.rawValue() == raw)
            return f;
    return std::nullopt;
}

QString ExplorerFilter::title() const
{
    static const char *const titles[] = {
        QT_TRANSLATE_NOOP("Explorer", "All"),   QT_TRANSLATE_NOOP("Explorer", "Folders"),
        QT_TRANSLATE_NOOP("Explorer", "Files"), QT_TRANSLATE_NOOP("Explorer", "Grime"),
        QT_TRANSLATE_NOOP("Explorer", "Heavy"), QT_TRANSLATE_NOOP("Explorer", "Selected"),
    };
    return explorerText(titles[m_value]);
}
