#include "Cli.h"
#include "TestMain.h"

#include "core/Fmt.h"
#include "core/VolumeInfo.h"

class TestVolumesCommand : public QObject
{
    Q_OBJECT

private slots:
    void listsTheMountedVolumes()
    {
        const QList<VolumeInfo> volumes = VolumeInfo::mounted();
        if (volumes.isEmpty())
            QSKIP("no volume to list on this machine");
        const CliOutcome run = sorvel({QStringLiteral("volumes")});
        QCOMPARE(run.status, 0);
        const QStringList lines = QString::fromUtf8(run.out).split(u'\n', Qt::SkipEmptyParts);
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
