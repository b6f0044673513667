#include "TestMain.h"

#include <QDir>
#include <QFile>
#include <QProcess>

// `sorvel risk` as a user runs it, in this run's temporary home.
class TestRiskCommand : public QObject
{
    Q_OBJECT

    static QProcess *run(const QStringList &args, const QString &folder = {})
    {
        auto *process = new QProcess;
        process->setWorkingDirectory(folder);
        process->start(QStringLiteral(SORVEL_CLI), args);
        process->waitForFinished(30000);
        return process;
    }

private slots:
    void threeVerdicts()
    {
        const QString home = QFile::decodeName(TestMain::home());
        std::unique_ptr<QProcess> process(run({QStringLiteral("risk"), home + QStringLiteral("/.ssh/id_rsa"),
                                               QStringLiteral("~/Downloads/x.iso"), QStringLiteral("/usr/bin/ls")}));
        // The first two are missing: judged all the same, said so, and the status tells.
        QCOMPARE(process->exitStatus(), QProcess::NormalExit);
        QCOMPARE(process->exitCode(), 1);
        const QString out = QString::fromUtf8(process->readAllStandardOutput());
        const QStringList blocks = out.trimmed().split(QStringLiteral("\n\n"));
        QCOMPARE(blocks.size(), 3);
        QVERIFY2(blocks[1].contains(QLatin1String("does not exist: ")), qPrintable(out));
        QVERIFY2(!blocks[2].contains(QLatin1String("does not exist")), qPrintable(out));

        QVERIFY2(blocks[0].startsWith(home + QStringLiteral("/.ssh/id_rsa\n")), qPrintable(out));
        QVERIFY2(blocks[0].contains(QLatin1String("locked: Kept")), qPrintable(out));
        QVERIFY2(blocks[0].contains(
                     QLatin1String("protected (by its text): Your SSH and encryption keys are never touched")),
                 qPrintable(out));

        QVERIFY2(blocks[1].startsWith(home + QStringLiteral("/Downloads/x.iso\n")), qPrintable(out));
        QVERIFY2(blocks[1].contains(QLatin1String("caution: Installer")), qPrintable(out));
        QVERIFY2(!blocks[1].contains(QLatin1String("protected")), qPrintable(out));

        QVERIFY2(blocks[2].contains(QLatin1String("locked: Kept")), qPrintable(out));
        QVERIFY2(blocks[2].contains(QLatin1String("protected (by its text): ")), qPrintable(out));
#ifndef Q_OS_MACOS
        QVERIFY2(blocks[2].contains(QLatin1String("Part of the system, never touched")), qPrintable(out));
#endif
    }

    // The guard follows a link in the folders of a path; the last name is never
    // followed, and a relative path starts in the current folder.
    void whereThePathReallyLeads()
    {
        const QByteArray home = TestMain::home();
        QVERIFY(QDir().mkpath(QFile::decodeName(home + "/.ssh")));
        QVERIFY(QDir().mkpath(QFile::decodeName(home + "/proj")));
        QFile(QFile::decodeName(home + "/.ssh/id_key")).open(QIODevice::WriteOnly);
        QVERIFY(QFile::link(QStringLiteral("../.ssh"), QFile::decodeName(home + "/proj/keys")));
        QVERIFY(QFile::link(QStringLiteral("/"), QFile::decodeName(home + "/proj/slash")));

        std::unique_ptr<QProcess> process(
            run({QStringLiteral("risk"), QStringLiteral("~/proj/keys/id_key"),
                 QStringLiteral("~/proj/slash/usr/bin/ls"), QStringLiteral("~/proj/keys"), QStringLiteral("passwd")},
                QStringLiteral("/etc")));
        QCOMPARE(process->exitCode(), 0);
        const QString out = QString::fromUtf8(process->readAllStandardOutput());
        const QStringList blocks = out.trimmed().split(QStringLiteral("\n\n"));
        QCOMPARE(blocks.size(), 4);
        QVERIFY2(blocks[0].contains(QLatin1String("leads to: ") + QFile::decodeName(home + "/.ssh/id_key")),
                 qPrintable(out));
        QVERIFY2(blocks[0].contains(QLatin1String(
                     "protected (where it really leads): Your SSH and encryption keys are never touched")),
                 qPrintable(out));
        QVERIFY2(blocks[1].contains(QLatin1String("protected (where it really leads)")), qPrintable(out));
        // The link itself may go: its text and its place are both the link.
        QVERIFY2(!blocks[2].contains(QLatin1String("protected")), qPrintable(out));
        QVERIFY2(blocks[3].startsWith(QLatin1String("/etc/passwd\n")), qPrintable(out));
        QVERIFY2(blocks[3].contains(QLatin1String("protected (by its text)")), qPrintable(out));

        std::unique_ptr<QProcess> empty(run({QStringLiteral("risk"), QString()}));
        QCOMPARE(empty->exitCode(), 2);
    }

    void defaultVerdictAndUsage()
    {
        std::unique_ptr<QProcess> plain(run({QStringLiteral("risk"), QStringLiteral("/tmp/sorvel-nothing-here.txt")}));
        QCOMPARE(plain->exitCode(), 1);
        const QByteArray said = plain->readAllStandardOutput();
        QVERIFY(said.contains("normal: nothing special is known"));
        QVERIFY(said.contains("does not exist: "));

        std::unique_ptr<QProcess> bare(run({QStringLiteral("risk")}));
        QCOMPARE(bare->exitCode(), 2);
        QVERIFY(bare->readAllStandardError().contains("Usage: sorvel risk PATH..."));
    }
};

SORVEL_TEST(TestRiskCommand);
#include "tst_riskcommand.moc"
