#include "MainWindow.h"
#include "ScopedEnv.h"
#include "TestMain.h"

#include "../state/FakeScanner.h"

#include "AppStateForeign.h"
#include "ScanControls.h"
#include "Shell.h"

#include "core/FilePreview.h"
#include "core/Prefs.h"
#include "core/Translations.h"
#include "explorer/SpaceModel.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"

#include <QDir>
#include <QFile>
#include <QQmlApplicationEngine>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>

#include <cerrno>
#include <cmath>
#include <functional>

#include <memory>

namespace {

// The state with a steerable scanner and no real volumes.
struct Fixture {
    Fixture(const QByteArrayList &arguments = {"sorvel-cleaner"})
    {
        Prefs::registerDefaults();
        state.setArguments(arguments);
        state.setScanFunction(scanner.function());
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
    }
    AppState state;
    FakeScanner scanner; // after the state: destroyed first, releasing its runs
};

// A scan of `root` where some folders couldn't be read: one wholly, one in
// part, one deeper down.
ScanResultPtr unreadableTree(const QByteArray &root)
{
    auto top = std::make_shared<DirNode>(root);
    const auto folder = [](const DirNodePtr &parent, const char *name, qint64 size, qint64 files) {
        auto node = std::make_shared<DirNode>(QByteArray(name), parent);
        node->size = size;
        node->fileCount = files;
        node->smallFilesSize = size;
        parent->children.push_back(node);
        parent->size += size;
        parent->fileCount += files;
        return node;
    };
    const auto unreadable = [](const DirNodePtr &node, bool partly) {
        node->readError = EACCES;
        node->partlyRead = partly;
        for (DirNodePtr at = node; at; at = at->parentNode())
            ++at->unreadableBelow;
    };
    const auto footage = folder(top, "Footage", 0, 0);
    folder(footage, "2024", 41'800'000'000, 210);
    unreadable(folder(footage, "Client Archive", 0, 0), false);
    top->size += footage->size;
    top->fileCount += footage->fileCount;
    folder(top, "Projects", 12'400'000'000, 48'000);
    unreadable(folder(top, "shared", 1'200'000'000, 320), true);
    unreadable(folder(top, "Backups", 0, 0), false);
    unreadable(folder(top, "lost+found", 0, 0), false);
    top->sortRecursively();
    auto result = std::make_shared<ScanResult>();
    result->root = top;
    result->categoryTotals[FileCategory::video] = {41'800'000'000, 210};
    result->categoryTotals[FileCategory::code] = {12'400'000'000, 48'000};
    result->categoryTotals[FileCategory::other] = {1'200'000'000, 320};
    result->totalFiles = top->fileCount;
    result->unreadableCount = 4;
    result->duration = 3.2;
    return result;
}

} // namespace

// The window's rules working on the real application state.
class FrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The whole window on the demo disk, in both appearances, with no QML
    // warning. With SORVEL_SCREENSHOT_DIR set it saves the frame, the scan menu
    // open, a toast and a sheet over the backdrop.
    void window_data() { addAppearanceRows(); }

    void window()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        Fixture f({"sorvel-cleaner", "-demo"});
        AppStateForeign::setInstance(&f.state);

        MainWindow main;
        QVERIFY(main.load());
        QQuickWindow *window = main.window();
        QCOMPARE(window->size(), QSize(1240, 800));
        const auto shoot = [&](const char *name) {
            QVERIFY(main.shoot(QStringLiteral("frame-%1-%2.png").arg(QLatin1String(name), QLatin1String(appearance))));
        };
        // Before any scan the Files items offer one.
        f.state.setSection(SidebarItem::largest);
        shoot("no-scan");
        f.state.onLaunch();
        f.state.setSection(SidebarItem::overview);
        shoot("space");
        f.state.setSection(SidebarItem::largest);
        shoot("files");
        f.state.setSection(SidebarItem::cleanup);
        shoot("deepclean");
        f.state.setSection(SidebarItem::overview);

        // Two tiles selected, as icons and as a list, with the selection bar.
        auto *space = window->findChild<SpaceModel *>();
        QVERIFY(space);
        for (int row = 0; row < space->rowCount() && f.state.queue()->items().size() < 2; ++row)
            space->toggle(row, 1, false);
        QCOMPARE(f.state.queue()->items().size(), 2);
        f.state.setToast(std::nullopt);
        shoot("space-selected");
        space->setLayoutText(QStringLiteral("list"));
        shoot("space-list");
        space->setLayoutText(QStringLiteral("icons"));
        f.state.queue()->clear();
        // A search that finds nothing.
        space->setSearch(QStringLiteral("holiday"));
        shoot("space-nothing");
        space->setSearch(QString());

        QObject *menu = nullptr;
        for (QObject *object : window->findChildren<QObject *>())
            if (QByteArray(object->metaObject()->className()).startsWith("ScanMenu"))
                menu = object;
        QVERIFY(menu);
        QMetaObject::invokeMethod(menu, "open");
        QTRY_VERIFY(menu->property("opened").toBool());
        shoot("scan-menu");
        QMetaObject::invokeMethod(menu, "close");
        QTRY_VERIFY(!menu->property("visible").toBool());

        f.state.showToast(QStringLiteral("Sorvelised 2.1 GB · 3 items in the Trash"), QStringLiteral("humidity.fill"),
                          QStringLiteral("Undo"), RemovalSession::undoAction);
        shoot("toast");
        f.state.setToast(std::nullopt);

        f.state.setErrorMessage(QStringLiteral("The Trash could not be emptied: permission denied."));
        shoot("sheet");
        f.state.setErrorMessage(QString());

        // While a scan runs, the bar shows what is read and offers Stop.
        // Folders of the test's home, so no picture names a temporary folder.
        const QByteArray projects = TestMain::home() + "/Projects";
        QVERIFY(QDir().mkpath(QFile::decodeName(projects)));
        f.state.scan(projects);
        QVERIFY(f.scanner.waitForRuns(1));
        shoot("scanning");
        f.state.cancelScan();
        QTRY_VERIFY(!f.state.isScanning());
        f.scanner.release(0, nullptr);

        // What couldn't be read stands with a lock, and the header's notice
        // lists it.
        const QByteArray unreadableRoot = TestMain::home() + "/Archive";
        QVERIFY(QDir().mkpath(QFile::decodeName(unreadableRoot)));
        f.state.scan(unreadableRoot);
        QVERIFY(f.scanner.waitForRuns(2));
        f.scanner.release(1, unreadableTree(unreadableRoot));
        QTRY_VERIFY(f.state.result() && f.state.result()->root->name == unreadableRoot);
        QObject *notice = window->findChild<QObject *>(QStringLiteral("unreadableNotice"));
        QObject *list = window->findChild<QObject *>(QStringLiteral("unreadableList"));
        QVERIFY(notice && list);
        QTRY_VERIFY(notice->property("visible").toBool());
        QMetaObject::invokeMethod(list, "open");
        QTRY_VERIFY(list->property("opened").toBool());
        shoot("unreadable-notice");
        QMetaObject::invokeMethod(list, "close");
        QTRY_VERIFY(!list->property("visible").toBool());

        // The preview window, on a text file of the test's home.
        const QByteArray notes = TestMain::home() + "/Notes/packing-list.md";
        QVERIFY(QDir().mkpath(QFile::decodeName(TestMain::home() + "/Notes")));
        QFile text(QFile::decodeName(notes));
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("# Packing list\n\n- passport, tickets\n- charger and the spare cable\n- rain jacket\n"
                   "- the good headphones\n\nWater the plants on Friday.\n");
        text.close();
        QQuickWindow *preview = nullptr;
        for (QWindow *candidate : QGuiApplication::topLevelWindows())
            if (candidate->objectName() == QLatin1String("previewWindow"))
                preview = qobject_cast<QQuickWindow *>(candidate);
        QVERIFY(preview);
        QMetaObject::invokeMethod(preview, "show", Q_ARG(QVariant, FilePreview::details(notes)));
        QVERIFY(QTest::qWaitForWindowExposed(preview));
        QTest::qWait(200);
        const QByteArray dir = qgetenv("SORVEL_SCREENSHOT_DIR");
        if (!dir.isEmpty())
            QVERIFY(preview->grabWindow().save(QFile::decodeName(dir) +
                                               QStringLiteral("/preview-text-%1.png").arg(QLatin1String(appearance))));
        preview->close();

        QVERIFY2(main.warnings().isEmpty(), qPrintable(main.warningText()));
        AppStateForeign::setInstance(nullptr);
    }

    // A narrow window counts the files read in the short form; the selection
    // bar springs in and sinks away, and under reduced motion comes and goes
    // at once.
    void narrowWindowAndSelectionBar_data()
    {
        QTest::addColumn<QByteArray>("reduce");
        QTest::newRow("animations on") << QByteArray("0");
        QTest::newRow("reduced motion") << QByteArray("1");
    }

    void narrowWindowAndSelectionBar()
    {
        QFETCH(QByteArray, reduce);
        ScopedEnv motion("SORVEL_REDUCE_MOTION", reduce);
        Fixture f({"sorvel-cleaner", "-demo"});
        AppStateForeign::setInstance(&f.state);
        MainWindow main;
        QVERIFY(main.load());
        QQuickWindow *window = main.window();
        auto *shell =
            qmlEngine(window->contentItem())->singletonInstance<Shell *>(qmlTypeId("Sorvel.Ui", 1, 0, "Shell"));
        QVERIFY(shell);
        QVERIFY(!shell->scan()->compact());
        window->resize(900, 700);
        QTRY_VERIFY(shell->scan()->compact());
        QCOMPARE(ScanControls::count(123456, true), QStringLiteral("123K"));
        window->resize(1240, 800);
        QTRY_VERIFY(!shell->scan()->compact());

        QQuickItem *slot = nullptr;
        const std::function<void(QQuickItem *)> look = [&](QQuickItem *item) {
            for (QQuickItem *child : item->childItems()) {
                if (child->objectName() == QLatin1String("selectionBarSlot"))
                    slot = child;
                look(child);
            }
        };
        look(window->contentItem());
        QVERIFY(slot);
        QVERIFY(!slot->isVisible());
        CleanItem item;
        item.id = TestMain::home() + "/big.iso"; // an item of the test's own home
        item.name = QStringLiteral("big.iso");
        item.size = 4000000000;
        f.state.queue()->add(item);
        QVERIFY(slot->isVisible());
        if (reduce == "1") {
            QTRY_COMPARE_WITH_TIMEOUT(slot->property("away").toDouble(), 0.0, 100);
        } else {
            QVERIFY(slot->property("away").toDouble() > 0.5);
            QTRY_VERIFY(std::abs(slot->property("away").toDouble()) < 0.002);
        }
        f.state.queue()->remove(item.id);
        if (reduce == "1") {
            QTRY_VERIFY_WITH_TIMEOUT(!slot->isVisible(), 100);
        } else {
            QVERIFY(slot->isVisible()); // sinking away
            QTRY_VERIFY(!slot->isVisible());
        }
        QVERIFY2(main.warnings().isEmpty(), qPrintable(main.warningText()));
        AppStateForeign::setInstance(nullptr);
    }

    void helpTextsSayCtrlOnLinux()
    {
        QTranslator *translator = Translations::install(Platform::linux);
        QVERIFY(translator);
        QCOMPARE(QCoreApplication::translate("TopBar", "Stop scanning (\u2318.)"),
                 QStringLiteral("Stop scanning (Ctrl+.)"));
        QCoreApplication::removeTranslator(translator);
        delete translator;
        QCOMPARE(QCoreApplication::translate("TopBar", "Stop scanning (\u2318.)"),
                 QStringLiteral("Stop scanning (\u2318.)"));
    }

    void areaSwitchReturnsToTheLastItem()
    {
        Fixture f;
        Shell shell(&f.state);
        QSignalSpy changed(&shell, &Shell::sectionChanged);
        f.state.setSection(SidebarItem::old);
        shell.goToArea(QStringLiteral("space"));
        QCOMPARE(f.state.sectionText(), QStringLiteral("overview"));
        QCOMPARE(shell.areaIndex(), 0);
        shell.goToArea(QStringLiteral("files"));
        QCOMPARE(f.state.sectionText(), QStringLiteral("old"));
        QCOMPARE(shell.areaIndex(), 1);
        shell.goToAreaAt(2);
        QCOMPARE(f.state.sectionText(), QStringLiteral("cleanup"));
        shell.goToArea(QStringLiteral("nowhere"));
        QCOMPARE(f.state.sectionText(), QStringLiteral("cleanup"));
        QCOMPARE(changed.count(), 4);
    }

    void droppingTwoFoldersScansTheFirst()
    {
        Fixture f;
        Shell shell(&f.state);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("one")));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("two")));
        QVERIFY(shell.dropUrls({QUrl::fromLocalFile(dir.filePath(QStringLiteral("one"))),
                                QUrl::fromLocalFile(dir.filePath(QStringLiteral("two")))}));
        QVERIFY(f.scanner.waitForRuns(1));
        QCOMPARE(f.state.scanTarget(), QFile::encodeName(dir.filePath(QStringLiteral("one"))));
        QVERIFY(f.state.isScanning());
        QVERIFY(shell.scan()->canStop());
        QVERIFY(!shell.scan()->canRescan());
    }

    void newerToastOutlivesTheOlderClock()
    {
        Fixture f;
        Shell shell(&f.state);
        shell.toastTimer()->setLifetime(300);
        f.state.showToast(QStringLiteral("first"), QStringLiteral("checklist"));
        const QString first = f.state.toast()->id;
        QTest::qWait(150);
        f.state.showToast(QStringLiteral("second"), QStringLiteral("checklist"));
        const QString second = f.state.toast()->id;
        QVERIFY(first != second);
        // The first toast's four seconds (here 300 ms) pass: the second stays.
        QTest::qWait(220);
        QVERIFY(f.state.toast());
        QCOMPARE(f.state.toast()->id, second);
        QTRY_VERIFY_WITH_TIMEOUT(!f.state.toast(), 2000);
        // A stale clear of an old id is ignored.
        f.state.showToast(QStringLiteral("third"), QString());
        f.state.clearToast(first);
        QVERIFY(f.state.toast());
    }

    void activationRefreshesVolumesOutsideTheDemo_data()
    {
        QTest::addColumn<bool>("demo");
        QTest::newRow("real disk") << false;
        QTest::newRow("demo") << true;
    }

    void activationRefreshesVolumesOutsideTheDemo()
    {
        QFETCH(bool, demo);
        Fixture f(demo ? QByteArrayList{"sorvel-cleaner", "-demo"} : QByteArrayList{"sorvel-cleaner"});
        auto listings = std::make_shared<QAtomicInt>(0);
        f.state.setVolumesFunction([listings] {
            listings->fetchAndAddOrdered(1);
            return QList<VolumeInfo>();
        });
        Shell shell(&f.state);
        shell.onActivated();
        if (demo) {
            QTest::qWait(100);
            QCOMPARE(listings->loadAcquire(), 0);
        } else {
            QTRY_COMPARE(listings->loadAcquire(), 1);
        }
    }

    void selectionBarShowsWhileAnythingIsSelected()
    {
        Fixture f;
        Shell shell(&f.state);
        QSignalSpy changed(&shell, &Shell::selectionChanged);
        QVERIFY(!shell.hasSelection());
        CleanItem item;
        item.id = "/users/ada/big.iso";
        item.name = QStringLiteral("big.iso");
        item.size = 4000000000;
        f.state.queue()->add(item);
        QVERIFY(shell.hasSelection());
        f.state.queue()->remove(item.id);
        QVERIFY(!shell.hasSelection());
        QVERIFY(changed.count() >= 2);
    }

    void noticeAndDismiss()
    {
        Fixture f;
        Shell shell(&f.state);
        QCOMPARE(shell.modal()->sheet(), ModalPresenter::None);
        f.state.setErrorMessage(QStringLiteral("The Trash could not be emptied."));
        QCOMPARE(shell.modal()->sheet(), ModalPresenter::Notice);
        shell.clearErrorMessage();
        QVERIFY(f.state.errorMessage().isNull());
        QCOMPARE(shell.modal()->sheet(), ModalPresenter::None);
        f.state.setErrorMessage(QStringLiteral("again"));
        shell.modal()->dismiss();
        QVERIFY(f.state.errorMessage().isNull());
    }

    void scanControlsFollowTheState()
    {
        Fixture f;
        Shell shell(&f.state);
        QVERIFY(!shell.scan()->canRescan());
        QVERIFY(!shell.scan()->canStop());
        QTemporaryDir dir;
        f.state.scan(QFile::encodeName(dir.path()));
        QVERIFY(f.scanner.waitForRuns(1));
        QVERIFY(shell.scan()->canStop());
        QVERIFY(!shell.scan()->canRescan());
        f.state.cancelScan();
        QTRY_VERIFY(!f.state.isScanning());
        QVERIFY(!shell.scan()->canStop());
        QVERIFY(shell.scan()->canRescan());
    }
};

SORVEL_TEST(FrameTest);
#include "tst_frame.moc"
