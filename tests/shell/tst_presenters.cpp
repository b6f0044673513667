#include "TestMain.h"

#include "ModalPresenter.h"
#include "ScanControls.h"
#include "ShellRules.h"
#include "ToastTimer.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/stat.h>

class PresentersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void modalPrecedence_data()
    {
        QTest::addColumn<bool>("reviewing");
        QTest::addColumn<bool>("deletion");
        QTest::addColumn<bool>("confirm");
        QTest::addColumn<bool>("failures");
        QTest::addColumn<bool>("error");
        QTest::addColumn<int>("sheet");
        QTest::newRow("nothing") << false << false << false << false << false << int(ModalPresenter::None);
        QTest::newRow("review over all") << true << true << true << true << true << int(ModalPresenter::Review);
        QTest::newRow("deletion over confirm")
            << false << true << true << false << false << int(ModalPresenter::Deletion);
        QTest::newRow("confirm over failures")
            << false << false << true << true << false << int(ModalPresenter::Confirm);
        QTest::newRow("failures before notice")
            << false << false << false << true << true << int(ModalPresenter::Failure);
        QTest::newRow("notice alone") << false << false << false << false << true << int(ModalPresenter::Notice);
    }

    void modalPrecedence()
    {
        QFETCH(bool, reviewing);
        QFETCH(bool, deletion);
        QFETCH(bool, confirm);
        QFETCH(bool, failures);
        QFETCH(bool, error);
        QFETCH(int, sheet);
        QCOMPARE(int(ModalPresenter::sheetFor(reviewing, deletion, confirm, failures, error)), sheet);

        ModalPresenter presenter;
        presenter.setIsReviewing(reviewing);
        presenter.setHasPendingDeletion(deletion);
        presenter.setHasConfirm(confirm);
        presenter.setHasDeletionFailures(failures);
        presenter.setHasErrorMessage(error);
        QCOMPARE(int(presenter.sheet()), sheet);
        QCOMPARE(presenter.isPresented(), sheet != ModalPresenter::None);
    }

    void waitingSheetsFollowInTurn()
    {
        ModalPresenter presenter;
        QSignalSpy changed(&presenter, &ModalPresenter::sheetChanged);
        presenter.setHasErrorMessage(true);
        presenter.setHasDeletionFailures(true);
        QCOMPARE(presenter.sheet(), ModalPresenter::Failure);
        QCOMPARE(changed.count(), 2);
        // "OK" on the failures: the notice follows.
        presenter.setHasDeletionFailures(false);
        QCOMPARE(presenter.sheet(), ModalPresenter::Notice);
        // Writing a value it already has changes nothing.
        presenter.setHasErrorMessage(true);
        QCOMPARE(changed.count(), 3);
        presenter.setHasErrorMessage(false);
        QVERIFY(!presenter.isPresented());

        QSignalSpy dismissed(&presenter, &ModalPresenter::dismissRequested);
        presenter.dismiss();
        QCOMPARE(dismissed.count(), 1);
    }

    void toastExpiresAfterItsLifetime()
    {
        ToastTimer timer;
        timer.setLifetime(150);
        QSignalSpy expired(&timer, &ToastTimer::expired);
        timer.setToastId(QStringLiteral("a"));
        QVERIFY(expired.wait(2000));
        QCOMPARE(expired.count(), 1);
        QCOMPARE(expired.first().first().toString(), QStringLiteral("a"));
    }

    void clearedToastNeverExpires()
    {
        ToastTimer timer;
        timer.setLifetime(100);
        QSignalSpy expired(&timer, &ToastTimer::expired);
        timer.setToastId(QStringLiteral("a"));
        timer.setToastId(QString());
        QTest::qWait(250);
        QCOMPARE(expired.count(), 0);
        // The same toast shown again after being cleared gets a fresh clock.
        timer.setToastId(QStringLiteral("a"));
        QVERIFY(expired.wait(2000));
    }

    void areaSwitch_data()
    {
        QTest::addColumn<int>("area");
        QTest::addColumn<int>("last"); // -1: none
        QTest::addColumn<int>("section");
        QTest::newRow("files, back to twins")
            << int(Area::files) << int(SidebarItem::duplicates) << int(SidebarItem::duplicates);
        QTest::newRow("files, first visit") << int(Area::files) << -1 << int(SidebarItem::largest);
        QTest::newRow("steam, first visit") << int(Area::steam) << -1 << int(SidebarItem::cleanup);
        QTest::newRow("an item of another area is ignored")
            << int(Area::files) << int(SidebarItem::cleanup) << int(SidebarItem::largest);
    }

    void areaSwitch()
    {
        QFETCH(int, area);
        QFETCH(int, last);
        QFETCH(int, section);
        const std::optional<SidebarItem> lastItem =
            last < 0 ? std::nullopt : std::optional<SidebarItem>(SidebarItem(SidebarItem::Value(last)));
        QCOMPARE(int(ShellRules::sectionForArea(Area(Area::Value(area)), lastItem)), section);
    }

    void dropScansTheFirstFolderOnly()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("first")));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("second")));
        QFile file(dir.filePath(QStringLiteral("file.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        const QUrl first = QUrl::fromLocalFile(dir.filePath(QStringLiteral("first")));
        const QUrl second = QUrl::fromLocalFile(dir.filePath(QStringLiteral("second")));
        const QUrl aFile = QUrl::fromLocalFile(file.fileName());

        QCOMPARE(ShellRules::folderToScan({first, second}),
                 std::optional<QByteArray>(QFile::encodeName(dir.filePath(QStringLiteral("first")))));
        QCOMPARE(ShellRules::folderToScan({aFile}), std::nullopt);
        // Only the first counts: a file first refuses the drop, even with a folder after it.
        QCOMPARE(ShellRules::folderToScan({aFile, first}), std::nullopt);
        QCOMPARE(ShellRules::folderToScan({}), std::nullopt);
        QCOMPARE(ShellRules::folderToScan({QUrl(QStringLiteral("https://example.org/folder/"))}), std::nullopt);
        QCOMPARE(ShellRules::folderToScan({QUrl::fromLocalFile(dir.filePath(QStringLiteral("gone")))}), std::nullopt);
    }

    void dropKeepsTheExactBytesOfAName()
    {
        QTemporaryDir dir;
        const QByteArray odd = QFile::encodeName(dir.path()) + "/caf\xe9 #1";
        QVERIFY(::mkdir(odd.constData(), 0700) == 0);
        QUrl url;
        url.setScheme(QStringLiteral("file"));
        url.setPath(QString::fromLatin1(QFile::encodeName(dir.path()).toPercentEncoding("/") + "/caf%E9%20%231"),
                    QUrl::StrictMode);
        QVERIFY(url.isValid());
        QCOMPARE(ShellRules::folderToScan({url}), std::optional<QByteArray>(odd));
        QVERIFY(::rmdir(odd.constData()) == 0);
    }

    void scanTexts()
    {
        ScanControls controls;
        QSignalSpy changed(&controls, &ScanControls::changed);
        controls.setScanTarget(QStringLiteral("/"));
        QCOMPARE(controls.readingText(), QStringLiteral("Reading your disk"));
        QCOMPARE(controls.rescanText(), QStringLiteral("Rescan your disk"));
        controls.setScanTarget(QStringLiteral("/users/ada/Projects"));
        QCOMPARE(controls.readingText(), QStringLiteral("Reading Projects"));
        controls.setFilesScanned(1);
        QCOMPARE(controls.filesText(), QStringLiteral("1 file"));
        controls.setFilesScanned(1234567);
        QCOMPARE(controls.filesText(), QStringLiteral("1,234,567 files"));
        controls.setCompact(true);
        QCOMPARE(controls.filesText(), QStringLiteral("1.2M files"));
        QCOMPARE(changed.count(), 5);
        controls.setCompact(true);
        QCOMPARE(changed.count(), 5);
    }

    void shortCounts_data()
    {
        QTest::addColumn<qint64>("files");
        QTest::addColumn<QString>("text");
        QTest::newRow("999") << qint64(999) << QStringLiteral("999");
        QTest::newRow("1000") << qint64(1000) << QStringLiteral("1K");
        QTest::newRow("1999") << qint64(1999) << QStringLiteral("1.9K");
        QTest::newRow("999999") << qint64(999999) << QStringLiteral("999K");
        QTest::newRow("1000000") << qint64(1000000) << QStringLiteral("1M");
        QTest::newRow("negative") << qint64(-5) << QStringLiteral("0");
    }

    void shortCounts()
    {
        QFETCH(qint64, files);
        QFETCH(QString, text);
        QCOMPARE(ScanControls::count(files, true), text);
    }
};

SORVEL_TEST(PresentersTest);
#include "tst_presenters.moc"
