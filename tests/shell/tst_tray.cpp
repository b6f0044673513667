#include "MainWindow.h"
#include "TestMain.h"

#include "../state/FakeScanner.h"

#include "AppStateForeign.h"
#include "TrayModel.h"

#include "core/Fmt.h"
#include "core/Prefs.h"
#include "state/AppState.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

VolumeInfo volume(const char *name, qint64 available)
{
    VolumeInfo v;
    v.url = QByteArray("/srv/") + name;
    v.name = QString::fromLatin1(name);
    v.total = 1'000'000'000'000;
    v.available = available;
    return v;
}

QStringList names(const QVariantList &rows, const char *key)
{
    QStringList out;
    for (const QVariant &row : rows)
        out << row.toMap().value(QString::fromLatin1(key)).toString();
    return out;
}

} // namespace

// The tray's panel: its content for no and for many volumes and during a scan,
// rows that bring the window back before they act, and the panel on screen.
class TrayTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefs;

private Q_SLOTS:
    void initTestCase()
    {
        Prefs::registerDefaults();
        Prefs::useFile(m_prefs.filePath(QStringLiteral("prefs.ini")));
    }

    void contentAndRows()
    {
        AppState state;
        state.setArguments({"sorvel-cleaner"});
        FakeScanner scanner;
        state.setScanFunction(scanner.function());
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        TrayModel tray;
        tray.setState(&state);

        // Nothing known yet: no volumes, no scan, and the rows work.
        QVERIFY(tray.volumes().isEmpty());
        QCOMPARE(tray.freedText(), Fmt::bytes(0));
        QVERIFY(!tray.isScanning());
        QCOMPARE(names(TrayModel::rows(), "action"), (QStringList{"open", "scanHome", "deepClean", "quit"}));

        // Four volumes: the first three.
        QSignalSpy changed(&tray, &TrayModel::changed);
        state.setVolumes({volume("Root", 100'000'000'000), volume("Data", 2'000'000'000), volume("Backup", 3'000'000),
                          volume("Stick", 4'000)});
        QVERIFY(!changed.isEmpty());
        QCOMPARE(names(tray.volumes(), "name"), (QStringList{"Root", "Data", "Backup"}));
        QCOMPARE(names(tray.volumes(), "free").first(), QStringLiteral("%1 free").arg(Fmt::bytes(100'000'000'000)));

        // Each row asks for the window before it changes anything in it.
        std::optional<SidebarItem> sectionAtRequest;
        bool scanningAtRequest = true;
        connect(&tray, &TrayModel::windowRequested, this, [&] {
            sectionAtRequest = state.section();
            scanningAtRequest = state.isScanning();
        });
        state.setSection(SidebarItem::largest);
        tray.trigger(QStringLiteral("deepClean"));
        QCOMPARE(sectionAtRequest, SidebarItem::largest);
        QCOMPARE(state.section(), SidebarItem::cleanup);

        QSignalSpy quit(&tray, &TrayModel::quitRequested);
        QSignalSpy window(&tray, &TrayModel::windowRequested);
        tray.trigger(QStringLiteral("quit"));
        QCOMPARE(quit.size(), 1);
        QCOMPARE(window.size(), 0);

        // Scanning the home: the window first, then the scan, which the panel follows.
        tray.trigger(QStringLiteral("scanHome"));
        QVERIFY(!scanningAtRequest);
        QVERIFY(scanner.waitForRuns(1));
        QCOMPARE(scanner.run(0)->root, TestMain::home());
        QVERIFY(tray.isScanning());
        QCOMPARE(tray.readingText(), QStringLiteral("Reading %1").arg(Fmt::displayName(TestMain::home())));
        ScanProgress progress;
        progress.filesScanned = 12408;
        scanner.run(0)->progress(progress);
        QTRY_COMPARE(tray.filesText(), QStringLiteral("%1 files").arg(QLocale().toString(12408)));
        state.cancelScan();
        QTRY_VERIFY(!tray.isScanning());
        QVERIFY(tray.readingText().isEmpty());
    }

    void panel_data() { addAppearanceRows(); }

    // With SORVEL_SCREENSHOT_DIR set, saves tray-panel-<appearance>.png: the
    // demo's volumes and a scan under way.
    void panel()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        AppState state;
        state.setArguments({"sorvel-cleaner", "-demo"});
        FakeScanner scanner;
        state.setScanFunction(scanner.function());
        AppStateForeign::setInstance(&state);
        state.onLaunch();
        state.setVolumes(state.volumes() + QList<VolumeInfo>{volume("Photos", 412'000'000'000)});
        state.scan(TestMain::home() + "/Projects");
        QVERIFY(scanner.waitForRuns(1));

        MainWindow main; // collects the warnings
        QQmlEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/"));
        QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/TrayPanel.qml")));
        std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        auto *panel = qobject_cast<QQuickWindow *>(object.get());
        QVERIFY(panel);
        panel->show();
        QVERIFY(QTest::qWaitForWindowExposed(panel));
        ScanProgress progress;
        progress.filesScanned = 48210;
        scanner.run(0)->progress(progress);
        QTest::qWait(250);
        const QImage image = panel->grabWindow();
        QVERIFY(!image.isNull());
        const QString dir = QFile::decodeName(qgetenv("SORVEL_SCREENSHOT_DIR"));
        if (!dir.isEmpty())
            QVERIFY(image.save(dir + QStringLiteral("/tray-panel-%1.png").arg(QLatin1String(appearance))));

        // Escape hides it.
        QTest::keyClick(panel, Qt::Key_Escape);
        QTRY_VERIFY(!panel->isVisible());
        state.cancelScan();
        QVERIFY2(main.warnings().isEmpty(), qPrintable(main.warningText()));
        AppStateForeign::setInstance(nullptr);
    }
};

SORVEL_TEST(TrayTest);
#include "tst_tray.moc"
