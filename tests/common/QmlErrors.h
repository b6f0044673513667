#pragma once

#include <QList>
#include <QQmlError>
#include <QStringList>

// QML warnings as one text, one per line, for a failing check's message.
inline QString describe(const QList<QQmlError> &errors)
{
    QStringList lines;
    for (const QQmlError &error : errors)
        lines << error.toString();
    return lines.join(QLatin1Char('\n'));
}
