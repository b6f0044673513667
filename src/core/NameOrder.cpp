#include "NameOrder.h"

#include <QLocale>

namespace NameOrder {

namespace {

QCollator makeCollator()
{
    QLocale locale;
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace

const QCollator &collator()
{
    thread_local const QCollator c = makeCollator();
    return c;
}

int compare(QStringView a, QStringView b)
{
    const int c = collator().compare(a, b);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

} // namespace NameOrder
