// The choices of a menu or a row of pills as QML reads them: one {raw, title}
// map per case of a value class with allCases, rawValue() and title(), in
// declared order. Any thread.

#pragma once

#include <QVariantList>
#include <QVariantMap>

template <typename Choice>
QVariantList choicesOf()
{
    QVariantList list;
    for (const Choice choice : Choice::allCases)
        list.append(QVariantMap{{QStringLiteral("raw"), choice.rawValue()}, {QStringLiteral("title"), choice.title()}});
    return list;
}
