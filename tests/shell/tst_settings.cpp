#include "MainWindow.h"
#include "TestMain.h"

#include "../state/FakeScanner.h"

#include "AboutModel.h"
#include "AppStateForeign.h"
#include "SettingsModel.h"
#include "SettingsRules.h"

#include "core/Desktop.h"
#include "core/Prefs.h"
#include "core/PrefsNotifier.h"
#include "core/Translations.h"
#include "state/AppState.h"

#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>

#include <algorithm>
#include <memory>

#include <optional>

namespace {

// A desktop whose folder chooser answers `answer` at once.
class FakeDesktop : public Desktop
{
public:
    QByteArray answer;
    QString prompt;
    int asked = 0;

    void chooseFolder(const QString &p, const QString &, const QByteArray &, FolderChosen done) override
    {
        ++asked;
        prompt = p;
        done(answer);
    }
    void copyText(const QString &) override {}
    void reveal(const QByteArrayList &) override {}
    void openFullDiskAccessSettings() override {}
};

// The preferences in an INI file of a temporary folder for as long as it lives;
// `contents`, if given, is written there first as the user's hand might have.
struct TempStore {
    explicit TempStore(const QByteArray &contents = {})
    {
        Prefs::registerDefaults();
        if (!contents.isEmpty()) {
            QFile file(path());
            if (file.open(QIODevice::WriteOnly))
                file.write(contents);
        }
        Prefs::useFile(path());
    }
    ~TempStore() { Prefs::useFile(QString()); }
    QString path() const { return dir.filePath(QStringLiteral("sorvel.ini")); }
    // The file as it is on disk once the store wrote out what it holds.
    QByteArray bytes() const
    {
        Prefs::useFile(path());
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    QTemporaryDir dir;
};

QByteArray home() { return TestMain::home(); }

QString homeText(const char *below) { return QFile::decodeName(home()) + QLatin1String(below); }

// Reads every property of the model, as a window showing it would.
void readEverything(const SettingsModel &model)
{
    const QMetaObject *meta = model.metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        (void)meta->property(i).read(&model);
}

QQuickWindow *settingsWindow()
{
    for (QWindow *window : QGuiApplication::topLevelWindows())
        if (window->title() == QLatin1String("Settings"))
            return qobject_cast<QQuickWindow *>(window);
    return nullptr;
}

QQuickWindow *windowTitled(const QString &title)
{
    for (QWindow *window : QGuiApplication::topLevelWindows())
        if (window->title() == title)
            return qobject_cast<QQuickWindow *>(window);
    return nullptr;
}

QString accessibleName(QQuickItem *item)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
    return accessible ? accessible->text(QAccessible::Name) : QString();
}

// The visible item below `item` with this accessible name.
QQuickItem *itemNamed(QQuickItem *item, const QString &name)
{
    if (!item->isVisible())
        return nullptr;
    if (accessibleName(item) == name)
        return item;
    for (QQuickItem *child : item->childItems())
        if (QQuickItem *found = itemNamed(child, name))
            return found;
    return nullptr;
}

// The accessible names of everything visible below `item`.
void collectNames(QQuickItem *item, QStringList &names)
{
    if (!item->isVisible())
        return;
    const QString name = accessibleName(item);
    if (!name.isEmpty())
        names << name;
    for (QQuickItem *child : item->childItems())
        collectNames(child, names);
}

void click(QQuickWindow *window, QQuickItem *item)
{
    QTest::mouseClick(window, Qt::LeftButton, {},
                      item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
}

int settingsWindowCount()
{
    int count = 0;
    for (QWindow *window : QGuiApplication::topLevelWindows())
        count += window->title() == QLatin1String("Settings") ? 1 : 0;
    return count;
}

} // namespace

// The settings window: its rules, its model over a temporary store, its effect
// on the next scan, and the window itself from the keyboard.
class SettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Sizes: the steps with a stored odd value as one more, anything that is no
    // whole number from 0 up read as the default. The list: normalised,
    // relative paths refused, duplicates dropped after normalising, name order.
    void rules()
    {
        using namespace SettingsRules;
        QCOMPARE(minTrackedSize(QVariant()), 1000000);
        QCOMPARE(minTrackedSize(QVariant(QStringLiteral(" 250000 "))), 250000);
        QCOMPARE(minTrackedSize(QVariant(QStringLiteral("0"))), 0);
        QCOMPARE(minTrackedSize(QVariant(QStringLiteral("-5"))), 1000000);
        QCOMPARE(minTrackedSize(QVariant(QStringLiteral("12abc"))), 1000000);

        const auto labels = [](qint64 current) {
            QStringList out;
            for (const SizeChoice &choice : sizeChoices(current))
                out.append(choice.label);
            return out;
        };
        QCOMPARE(labels(1000000), (QStringList{"100 kB", "1 MB", "10 MB", "100 MB"}));
        QCOMPARE(sizeIndex(1000000), 1);
        QCOMPARE(labels(5000000), (QStringList{"100 kB", "1 MB", "5 MB", "10 MB", "100 MB"}));
        QCOMPARE(sizeIndex(5000000), 2);
        QCOMPARE(sizeChoices(5000000).at(2).bytes, 5000000);
        QCOMPARE(sizeIndex(0), 0);

        QStringList list;
        for (const char *path : {"/srv/ada/x/", "/srv/ada/Beta", "/srv/ada/alpha", "/srv/ada/./x", "/srv/ada/y/../x"})
            list = withExcluded(list, QString::fromUtf8(path)).value_or(QStringList{"refused"});
        QCOMPARE(list, (QStringList{"/srv/ada/alpha", "/srv/ada/Beta", "/srv/ada/x"}));
        for (const char *relative : {"", "x", "./x", "../srv/ada", " /srv/ada"})
            QVERIFY2(!withExcluded(list, QString::fromUtf8(relative)), relative);
        QCOMPARE(withExcluded({}, QStringLiteral("~/Music")), QStringList{homeText("/Music")});
        QCOMPARE(withoutExcluded(list, QStringLiteral("/srv/ada//x/.")),
                 (QStringList{"/srv/ada/alpha", "/srv/ada/Beta"}));
        QCOMPARE(withoutExcluded(list, QStringLiteral("/srv/ada/nowhere")), list);
        QCOMPARE(displayPath(homeText("/Music")), QStringLiteral("~/Music"));

        // The legend speaks the catalogue's words, one row per level it names.
        const QList<LegendRow> rows = legend();
        QCOMPARE(rows.size(), 4);
        QCOMPARE(rows.first().level, Risk::Level::safe);
        QCOMPARE(rows.first().title, QStringLiteral("Safe: rebuilt automatically"));
        QCOMPARE(rows.last().level, Risk::Level::locked);
        for (const LegendRow &row : rows)
            QVERIFY(!row.lines.isEmpty());
    }

    // Every control writes its preference at once, and the model follows
    // writes from anywhere.
    void roundTrips()
    {
        TempStore store;
        SettingsModel model;
        QSignalSpy size(&model, &SettingsModel::sizeChanged);
        QSignalSpy hidden(&model, &SettingsModel::skipHiddenFilesChanged);
        QSignalSpy excluded(&model, &SettingsModel::excludedPathsChanged);

        QCOMPARE(model.sizeIndex(), 1);
        QVERIFY(model.treatPackagesAsFiles());
        QVERIFY(!model.skipHiddenFiles());
        QVERIFY(model.showMenuBarExtra());
        QVERIFY(model.excludedPaths().isEmpty());

        model.chooseSize(3);
        QCOMPARE(Prefs::integer(Prefs::minTrackedSize), 100000000);
        QCOMPARE(model.sizeIndex(), 3);
        model.chooseSize(9); // out of range: nothing
        QCOMPARE(Prefs::integer(Prefs::minTrackedSize), 100000000);
        model.setTreatPackagesAsFiles(false);
        model.setSkipHiddenFiles(true);
        model.setShowMenuBarExtra(false);
        QVERIFY(model.addExcludedPath(QStringLiteral("/srv/ada/b")));
        QVERIFY(model.addExcludedPath(QStringLiteral("/srv/ada/a/")));
        QCOMPARE(size.count(), 1);
        QCOMPARE(hidden.count(), 1);
        QCOMPARE(excluded.count(), 2);

        // What a scan reads, and what a fresh model over the same file shows.
        const ScanOptions options = ScanOptions::current();
        QCOMPARE(options.minTrackedSize, 100000000);
        QVERIFY(!options.treatPackagesAsFiles);
        QVERIFY(options.skipHiddenFiles);
        QCOMPARE(options.excludedPaths, (QByteArrayList{"/srv/ada/a", "/srv/ada/b"}));
        QVERIFY(!Prefs::boolean(Prefs::showMenuBarExtra));
        QVERIFY(store.bytes().contains("excludedPaths"));
        SettingsModel fresh;
        QCOMPARE(fresh.sizeIndex(), 3);
        QVERIFY(!fresh.treatPackagesAsFiles());
        QCOMPARE(fresh.excludedPaths(), (QStringList{"/srv/ada/a", "/srv/ada/b"}));

        // A refused path writes nothing; removing writes the rest.
        QSignalSpy writes(PrefsNotifier::instance(), &PrefsNotifier::changed);
        QVERIFY(!model.addExcludedPath(QStringLiteral("relative/x")));
        QCOMPARE(writes.count(), 0);
        model.removeExcluded(QStringLiteral("/srv/ada/b/"));
        QCOMPARE(Prefs::list(Prefs::excludedPaths), QStringList{"/srv/ada/a"});

        // A value written elsewhere shows at once; an odd one gets a choice of its own.
        size.clear();
        Prefs::setValue(Prefs::minTrackedSize, 5000000);
        QCOMPARE(size.count(), 1);
        QCOMPARE(model.sizeLabels().at(model.sizeIndex()), QStringLiteral("5 MB"));
        // "Add" asks the desktop, with "Exclude" on its button.
        AppState state;
        FakeDesktop desktop;
        state.setDesktop(&desktop);
        model.setState(&state);
        desktop.answer = "/srv/ada/c/./";
        model.addExcluded();
        desktop.answer.clear(); // cancelled
        model.addExcluded();
        QCOMPARE(desktop.asked, 2);
        QCOMPARE(desktop.prompt, QStringLiteral("Exclude"));
        QCOMPARE(model.excludedPaths(), (QStringList{"/srv/ada/a", "/srv/ada/c"}));
    }

    // Malformed values show as the default and the clean list; reading them,
    // which is all that opening does, writes nothing; the first edit writes a
    // clean value.
    void malformedValues()
    {
        TempStore store("[General]\nminTrackedSize=-40\ntreatPackagesAsFiles=maybe\n"
                        "excludedPaths=\"/srv/ada/b\\n\\nrelative/x\\n/srv/ada/a/\\n/srv/ada/./a\\n~/Music\"\n");
        const QByteArray before = store.bytes();
        SettingsModel model;
        readEverything(model);
        QCOMPARE(model.sizeIndex(), 1);
        QCOMPARE(model.sizeLabels().size(), 4);
        QVERIFY(model.treatPackagesAsFiles());
        const QStringList clean{"/srv/ada/a", "/srv/ada/b", homeText("/Music")};
        QCOMPARE(model.excludedPaths(), clean);
        QCOMPARE(model.excludedRows().at(2).toMap().value(QStringLiteral("display")), QStringLiteral("~/Music"));
        QCOMPARE(store.bytes(), before);

        model.removeExcluded(QStringLiteral("/srv/ada/b"));
        QCOMPARE(Prefs::text(Prefs::excludedPaths), QStringLiteral("/srv/ada/a\n") + homeText("/Music"));
        model.chooseSize(0);
        QCOMPARE(Prefs::integer(Prefs::minTrackedSize), 100000);
    }

    // A scan takes the settings of its start: a change while it runs counts
    // from the next one.
    void changesApplyFromTheNextScan()
    {
        TempStore store;
        AppState state;
        FakeScanner scanner;
        state.setScanFunction(scanner.function());
        SettingsModel model;
        model.setState(&state);

        state.scan("/srv/ada");
        QVERIFY(scanner.waitForRuns(1));
        model.setSkipHiddenFiles(true);
        model.chooseSize(0);
        QVERIFY(model.addExcludedPath(QStringLiteral("/srv/ada/cache")));
        state.scan("/srv/ada");
        QVERIFY(scanner.waitForRuns(2));

        const ScanOptions first = scanner.run(0)->options;
        QVERIFY(!first.skipHiddenFiles);
        QCOMPARE(first.minTrackedSize, 1000000);
        QVERIFY(first.excludedPaths.isEmpty());
        const ScanOptions second = scanner.run(1)->options;
        QVERIFY(second.skipHiddenFiles);
        QCOMPARE(second.minTrackedSize, 100000);
        QCOMPARE(second.excludedPaths, QByteArrayList{"/srv/ada/cache"});
        state.cancelScan();
    }

    // From "Add" to the disk: a folder chosen through the desktop is skipped
    // by the next real scan of a real tree.
    void neverScanSkipsTheFolder()
    {
        TempStore store;
        QTemporaryDir tree;
        const QDir root(tree.path());
        QVERIFY(root.mkpath(QStringLiteral("keep")) && root.mkpath(QStringLiteral("skip/deep")));
        const QByteArray block(300000, 'x');
        for (const char *name : {"keep/big.bin", "skip/big.bin", "skip/deep/big.bin"}) {
            QFile file(root.filePath(QString::fromUtf8(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(block), block.size());
        }

        AppState state;
        state.setArguments({"sorvel-cleaner"});
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        FakeDesktop desktop;
        desktop.answer = QFile::encodeName(root.filePath(QStringLiteral("skip")) + QLatin1Char('/'));
        state.setDesktop(&desktop);
        SettingsModel model;
        model.setState(&state);
        model.chooseSize(0); // 100 kB: every file above is listed
        model.addExcluded();
        QCOMPARE(model.excludedPaths(), QStringList{root.filePath(QStringLiteral("skip"))});

        state.scan(QFile::encodeName(root.path()));
        QTRY_VERIFY_WITH_TIMEOUT(!state.isScanning(), 10000);
        const ScanResultPtr result = state.result();
        QVERIFY(result);
        QStringList listed;
        for (const FileItem &item : result->files)
            listed.append(QFile::decodeName(item.path));
        QCOMPARE(listed, QStringList{root.filePath(QStringLiteral("keep/big.bin"))});
        QVERIFY(!result->node(QFile::encodeName(root.filePath(QStringLiteral("skip/deep")))));
    }

    // The window: Ctrl+, in the main window opens it, again raises the same
    // one; opening writes nothing; Tab reaches every control, arrows move the
    // size and Space toggles a switch; no QML warning. With
    // SORVEL_SCREENSHOT_DIR set it saves both appearances.
    void window_data() { addAppearanceRows(); }

    void window()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        TempStore store("[General]\nexcludedPaths=\"/srv/ada/Projects/old-builds\\n" + home() + "/Videos/Exports\"\n");
        const QByteArray before = store.bytes();
        AppState state;
        FakeScanner scanner;
        state.setArguments({"sorvel-cleaner"});
        state.setScanFunction(scanner.function());
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        AppStateForeign::setInstance(&state);
        // The wording of Linux, as the application loads it there.
        std::unique_ptr<QTranslator> wording(Translations::install(Platform::linux));
        QVERIFY(wording);
        QCOMPARE(QCoreApplication::translate("SettingsView", "Free space in the menu bar"),
                 QStringLiteral("Free space in the panel"));

        {
            MainWindow main;
            QVERIFY(main.load());
            QVERIFY(!settingsWindow() || !settingsWindow()->isVisible());
            main.window()->requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(main.window()));
            QTest::keyClick(main.window(), Qt::Key_Comma, Qt::ControlModifier);
            QTRY_VERIFY2(settingsWindow() && settingsWindow()->isExposed(), qPrintable(main.warningText()));
            QCOMPARE(settingsWindowCount(), 1);
            QQuickWindow *settings = settingsWindow();
            QVERIFY(QTest::qWaitForWindowActive(settings));
            main.window()->requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(main.window()));
            QTest::keyClick(main.window(), Qt::Key_Comma, Qt::ControlModifier);
            QTRY_COMPARE(QGuiApplication::focusWindow(), settings);
            QCOMPARE(settingsWindowCount(), 1);

            settings->resize(600, 1080); // every group in one picture
            QTest::qWait(200);
            const QImage image = settings->grabWindow();
            QVERIFY(!image.isNull());
            const QString dir = QFile::decodeName(qgetenv("SORVEL_SCREENSHOT_DIR"));
            if (!dir.isEmpty()) {
                QDir().mkpath(dir);
                QVERIFY(image.save(dir + QStringLiteral("/settings-%1.png").arg(QLatin1String(appearance))));
            }
            QCOMPARE(store.bytes(), before);
            // Without a window manager the main window may still take the
            // focus back after the settings window got it.
            settings->requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(settings));

            // Tab goes round every control: the size, two switches, two
            // Remove buttons, Add and the tray switch.
            QStringList names;
            QQuickItem *first = nullptr;
            for (int i = 0; i < 12; ++i) {
                QTest::keyClick(settings, Qt::Key_Tab);
                QQuickItem *item = settings->activeFocusItem();
                QVERIFY(item);
                // An X server may hand the window its focus after the first
                // Tab: the root item has it, and the next Tab goes on.
                if (!item->parentItem())
                    continue;
                if (item == first)
                    break;
                if (!first)
                    first = item;
                const QString type = QString::fromLatin1(item->metaObject()->className()).section(u'_', 0, 0);
                QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
                QVERIFY2(accessible, qPrintable(type));
                QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), qPrintable(type));
                names.append(type + QLatin1Char(':') + accessible->text(QAccessible::Name));
            }
            QCOMPARE(names, (QStringList{
                                "PillPicker:List files larger than",
                                "RowSwitch:Treat apps & bundles as one file",
                                "RowSwitch:Skip hidden files",
                                "SorvelButton:Remove /srv/ada/Projects/old-builds",
                                "SorvelButton:Remove ~/Videos/Exports",
                                "SorvelButton:Add",
                                "RowSwitch:Free space in the panel",
                            }));

            // From the size picker: Right moves to 10 MB; Tab, Space turns
            // the packages switch off.
            while (settings->activeFocusItem() != first)
                QTest::keyClick(settings, Qt::Key_Tab);
            QTest::keyClick(settings, Qt::Key_Right);
            QCOMPARE(Prefs::integer(Prefs::minTrackedSize), 10000000);
            QTest::keyClick(settings, Qt::Key_Tab);
            QTest::keyClick(settings, Qt::Key_Space);
            QVERIFY(!Prefs::boolean(Prefs::treatPackagesAsFiles));
            // The offscreen platform cannot raise a window and says so.
            QStringList warnings = main.warnings();
            warnings.removeAll(QStringLiteral("This plugin does not support raise()"));
            QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(u'\n')));
        }
        QCoreApplication::removeTranslator(wording.get());
        AppStateForeign::setInstance(nullptr);
    }

    // About, from the Commands menu beside Settings and Quit: the name, the
    // version of the build, the licence and the credits, each with an
    // accessible name; Close has the focus, and Escape or Space on it closes
    // the window. The menu button's tooltip stays off the open menu. With
    // SORVEL_SCREENSHOT_DIR set it saves both appearances.
    void about_data() { addAppearanceRows(); }

    void about()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        AppState state;
        state.setArguments({"sorvel-cleaner"});
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        AppStateForeign::setInstance(&state);
        const QString title = QStringLiteral("About Sorvel Cleaner");
        {
            MainWindow main;
            QVERIFY(main.load());
            QQuickWindow *window = main.window();
            window->requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(window));

            const auto openAbout = [&] {
                QQuickItem *button = itemNamed(window->contentItem(), QStringLiteral("Commands"));
                QVERIFY(button);
                click(window, button);
                QQuickItem *entry = nullptr;
                QTRY_VERIFY((entry = itemNamed(window->contentItem(), title)));
                QVERIFY(itemNamed(window->contentItem(), QStringLiteral("Settings…")));
                QVERIFY(itemNamed(window->contentItem(), QStringLiteral("Quit Sorvel Cleaner")));
                QCOMPARE(button->property("toolTip").toString(), QString());
                click(window, entry);
                QTRY_VERIFY(windowTitled(title) && windowTitled(title)->isExposed());
                QVERIFY(QTest::qWaitForWindowActive(windowTitled(title)));
            };
            openAbout();
            QQuickWindow *about = windowTitled(title);
            QVERIFY(about);

            AboutModel model;
            QStringList names;
            collectNames(about->contentItem(), names);
            for (const QString &expected : {model.name(), model.versionText(), model.licenceText()})
                QVERIFY2(names.contains(expected), qPrintable(names.join(u'\n')));
            QVERIFY(model.versionText().endsWith(AboutModel::version()));
            QVERIFY(!AboutModel::version().isEmpty());
            QCOMPARE(model.credits().size(), 4);
            for (const QVariant &credit : model.credits()) {
                const QString creditTitle = credit.toMap().value(QStringLiteral("title")).toString();
                QVERIFY2(std::any_of(names.begin(), names.end(),
                                     [&](const QString &n) { return n.startsWith(creditTitle); }),
                         qPrintable(creditTitle));
            }

            // The keyboard: Close has the focus and Tab keeps it there.
            QTRY_VERIFY(about->activeFocusItem());
            QCOMPARE(accessibleName(about->activeFocusItem()), QStringLiteral("Close"));
            QCOMPARE(QAccessible::queryAccessibleInterface(about->activeFocusItem())->role(), QAccessible::Button);
            QTest::keyClick(about, Qt::Key_Tab);
            QCOMPARE(accessibleName(about->activeFocusItem()), QStringLiteral("Close"));

            QTest::qWait(200);
            const QImage image = about->grabWindow();
            QVERIFY(!image.isNull());
            const QString dir = QFile::decodeName(qgetenv("SORVEL_SCREENSHOT_DIR"));
            if (!dir.isEmpty()) {
                QDir().mkpath(dir);
                QVERIFY(image.save(dir + QStringLiteral("/about-%1.png").arg(QLatin1String(appearance))));
            }

            QTest::keyClick(about, Qt::Key_Escape);
            QTRY_VERIFY(!about->isVisible());
            window->requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(window));
            openAbout();
            QCOMPARE(windowTitled(title), about);
            QTRY_VERIFY(about->activeFocusItem());
            QTest::keyClick(about, Qt::Key_Space);
            QTRY_VERIFY(!about->isVisible());

            QStringList warnings = main.warnings();
            warnings.removeAll(QStringLiteral("This plugin does not support raise()"));
            QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(u'\n')));
        }
        AppStateForeign::setInstance(nullptr);
    }
};

SORVEL_TEST(SettingsTest);
#include "tst_settings.moc"
