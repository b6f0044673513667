#pragma once

#include <QProcess>
#include <QStringList>

#include <unistd.h>

// Runs the command-line tool to its end, as "nobody" when asked and running as root.
struct CliOutcome {
    int status = -1; // -1: did not exit normally
    QByteArray out;
    QByteArray err;
};

inline CliOutcome sorvel(const QStringList &args, bool asNobody = false)
{
    QProcess p;
    if (asNobody && ::geteuid() == 0)
        p.start(QStringLiteral("setpriv"), QStringList{QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
                                                       QStringLiteral("--clear-groups"), QStringLiteral(SORVEL_CLI)} +
                                               args);
    else
        p.start(QStringLiteral(SORVEL_CLI), args);
    if (!p.waitForFinished(120000))
        qFatal("sorvel did not finish");
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
            p.readAllStandardError()};
}
