#include "TestMain.h"

#include "core/Fmt.h"
#include "core/VolumeInfo.h"

#include <QProcess>

class TestVolumesCommand : public QObject
{
    Q_OBJECT

    static int run(const QStringList &args, QByteArray *out)
    {
        QProcess p;
        p.start(QStringLiteral(SORVEL_CLI), QStringList{QStringLiteral("volumes")} + args);
        p.waitForFinished(60000);
        *out = p.readAllStandardOutput();
        return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    }

private slots:
    void listsTheMountedVolumes()
    {
        QByteArray out;
        const QList<VolumeInfo> volumes = VolumeInfo::mounted();
        if (volumes.isEmpty())
            QSKIP("no volume to list on this machine");
        QCOMPARE(run({}, &out), 0);
        const QStringList lines = QString::fromUtf8(out).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), volumes.size() + 1);
        QVERIFY(lines[0].simplified().startsWith(u"Name Mount point Free Total"_qs));
        // Rows in the order of the listing, each with its mount point and total.
        for (qsizetype i = 0; i < volumes.size(); ++i) {
            QVERIFY2(lines[i + 1].contains(volumes[i].pathText()), qPrintable(lines[i + 1]));
            QVERIFY2(lines[i + 1].endsWith(Fmt::bytes(volumes[i].total)), qPrintable(lines[i + 1]));
        }
    }
};

SORVEL_TEST(TestVolumesCommand);
#include "tst_volumescommand.moc"
