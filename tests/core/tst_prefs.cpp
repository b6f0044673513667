#include "TestMain.h"

#include "core/Paths.h"
#include "core/Prefs.h"
#include "core/PrefsNotifier.h"
#include "core/ScanOptions.h"
#include "core/SizeThreshold.h"

#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

class TestPrefs : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    int m_store = 0;
    QString m_file;

    // Writes raw INI text, the way a user or another version might have left it.
    void writeStore(const QByteArray &ini)
    {
        Prefs::useFile({});
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(ini);
        file.close();
        Prefs::useFile(m_file);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        Prefs::registerDefaults();
    }

    void init()
    {
        m_file = m_dir.filePath(QStringLiteral("store-%1.ini").arg(++m_store));
        Prefs::useFile(m_file);
    }

    void cleanupTestCase() { Prefs::useFile({}); }

    void defaultsAreNotWritten()
    {
        QCOMPARE(Prefs::integer(Prefs::minTrackedSize), 1000000);
        QVERIFY(!Prefs::value(Prefs::spaceLayout).isValid()); // the explorer has its own default
        Prefs::registerDefaults();                            // again: harmless
        Prefs::useFile({});
        QSettings written(m_file, QSettings::IniFormat);
        QVERIFY(written.allKeys().isEmpty());
    }

    void writesAndRemoves()
    {
        QSignalSpy changed(PrefsNotifier::instance(), &PrefsNotifier::changed);
        Prefs::setValue(Prefs::minTrackedSize, 0);
        QCOMPARE(Prefs::integer(Prefs::minTrackedSize), 0); // 0 is a legal value
        Prefs::remove(Prefs::minTrackedSize);
        QCOMPARE(Prefs::integer(Prefs::minTrackedSize), 1000000);
        Prefs::setValue(Prefs::skipHiddenFiles, true);
        Prefs::useFile(m_file); // read back from the file
        QCOMPARE(Prefs::boolean(Prefs::skipHiddenFiles), true);
        // Every write is told, and so is a store swapped underneath.
        QCOMPARE(changed.size(), 4);
        QCOMPARE(changed.at(1).first().toString(), QStringLiteral("minTrackedSize"));
        QVERIFY(changed.at(3).first().toString().isEmpty());
    }

    void list_data()
    {
        QTest::addColumn<QByteArray>("stored"); // INI value, escapes as QSettings writes them
        QTest::addColumn<QStringList>("entries");
        QTest::newRow("empty") << QByteArray("\"\"") << QStringList();
        QTest::newRow("order kept, empty pieces dropped")
            << QByteArray("\\n/z\\n\\n/a\\n") << QStringList{u"/z"_qs, u"/a"_qs};
        QTest::newRow("written as an INI list") << QByteArray("/a, /b") << QStringList{u"/a"_qs, u"/b"_qs};
    }

    void list()
    {
        QFETCH(QByteArray, stored);
        QFETCH(QStringList, entries);
        writeStore("[General]\nexcludedPaths=" + stored + "\n");
        QCOMPARE(Prefs::list(Prefs::excludedPaths), entries);
    }

    void setListLeavesOutWhatCannotBeStored()
    {
        Prefs::setList(Prefs::excludedPaths, {u"/a"_qs, u"/bad\nname"_qs, QString(), u"/b"_qs});
        QCOMPARE(Prefs::list(Prefs::excludedPaths), (QStringList{u"/a"_qs, u"/b"_qs}));
        Prefs::setList(Prefs::excludedPaths, {});
        QCOMPARE(Prefs::list(Prefs::excludedPaths), QStringList());
    }

    void malformedValues_data()
    {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<qint64>("minTracked");
        QTest::addColumn<bool>("packages");
        QTest::addColumn<bool>("hidden");
        QTest::newRow("words") << QByteArray("minTrackedSize=lots\ntreatPackagesAsFiles=maybe\nskipHiddenFiles=sure")
                               << qint64(1000000) << true << false;
        QTest::newRow("numbers as text") << QByteArray("minTrackedSize=\" 42 \"\ntreatPackagesAsFiles=0\n"
                                                       "skipHiddenFiles=YES")
                                         << qint64(42) << false << true;
        QTest::newRow("negative size") << QByteArray("minTrackedSize=-5") << qint64(0) << true << false;
        QTest::newRow("huge size") << QByteArray("minTrackedSize=99999999999999999999999") << qint64(1000000) << true
                                   << false;
    }

    void malformedValues()
    {
        QFETCH(QByteArray, ini);
        QFETCH(qint64, minTracked);
        QFETCH(bool, packages);
        QFETCH(bool, hidden);
        writeStore("[General]\n" + ini + "\n");
        const ScanOptions options = ScanOptions::current();
        QCOMPARE(options.minTrackedSize, minTracked);
        QCOMPARE(options.treatPackagesAsFiles, packages);
        QCOMPARE(options.skipHiddenFiles, hidden);
    }

    void scanOptionsFromTheStore()
    {
        QCOMPARE(ScanOptions::current(), ScanOptions{});
        const QByteArray odd("/tmp/caf\xe9 folder");
        Prefs::setValue(Prefs::minTrackedSize, 250000);
        Prefs::setValue(Prefs::treatPackagesAsFiles, false);
        Prefs::setList(Prefs::excludedPaths, {Paths::toText(odd), u"/Volumes/Backup"_qs});
        const ScanOptions options = ScanOptions::current();
        QCOMPARE(options.minTrackedSize, 250000);
        QVERIFY(!options.treatPackagesAsFiles);
        QCOMPARE(options.excludedPaths, (QByteArrayList{odd, "/Volumes/Backup"}));
    }

    void sizeThreshold()
    {
        QCOMPARE(SizeThreshold::fromRawValue(100000000), std::optional(SizeThreshold::allCases[2]));
        for (qint64 raw : {qint64(1), qint64(-10000000), qint64(1000000)})
            QCOMPARE(SizeThreshold::fromRawValue(raw), std::nullopt);
    }
};

SORVEL_TEST(TestPrefs);
#include "tst_prefs.moc"
