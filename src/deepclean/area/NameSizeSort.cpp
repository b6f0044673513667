#include "NameSizeSort.h"

#include <QCoreApplication>

QString NameSizeSort::rawValue() const { return m_value == size ? QStringLiteral("size") : QStringLiteral("name"); }

std::optional<NameSizeSort> NameSizeSort::fromRawValue(QStringView raw)
{
    for (const NameSizeSort sort : allCases)
        if (sort.rawValue() == raw)
            return sort;
    return std::nullopt;
}

QString NameSizeSort::title() const
{
    return m_value == size ? QCoreApplication::translate("DeepClean", "Size")
                           : QCoreApplication::translate("DeepClean", "Name");
}
