#include "NameSearch.h"

namespace NameSearch {

namespace {

bool isAscii(const QString &text)
{
    for (const QChar c : text)
        if (c.unicode() >= 0x80)
            return false;
    return true;
}

} // namespace

QString canonical(const QString &text)
{
    if (isAscii(text))
        return text;
    return text.normalized(QString::NormalizationForm_C).toCaseFolded().normalized(QString::NormalizationForm_C);
}

bool contains(const QString &name, const QString &search)
{
    if (search.isEmpty())
        return true;
    return canonical(name).contains(canonical(search), Qt::CaseInsensitive);
}

} // namespace NameSearch
