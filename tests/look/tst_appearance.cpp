#include "ScopedEnv.h"
#include "TestMain.h"

#include "Appearance.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // SORVEL_APPEARANCE ("flag": no) and SORVEL_REDUCE_MOTION ("flag": yes).
    void environmentValues_data()
    {
        QTest::addColumn<bool>("flag");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("expected"); // -1 none, 0 light or off, 1 dark or on
        QTest::newRow("dark") << false << QByteArray("dark") << 1;
        QTest::newRow("light, upper case, blanks") << false << QByteArray(" Light ") << 0;
        QTest::newRow("unset") << false << QByteArray() << -1;
        QTest::newRow("other") << false << QByteArray("auto") << -1;
        QTest::newRow("1") << true << QByteArray("1") << 1;
        QTest::newRow("true") << true << QByteArray("TRUE") << 1;
        QTest::newRow("0") << true << QByteArray("0") << 0;
        QTest::newRow("flag unset") << true << QByteArray() << -1;
        QTest::newRow("garbage") << true << QByteArray("maybe") << -1;
    }

    void environmentValues()
    {
        QFETCH(bool, flag);
        QFETCH(QByteArray, value);
        QFETCH(int, expected);
        const auto result = flag ? Appearance::flagFromEnvironment(value) : Appearance::darkFromEnvironment(value);
        QCOMPARE(result ? int(*result) : -1, expected);
    }

    void colorScheme()
    {
        QCOMPARE(Appearance::darkFromColorScheme(1), std::optional<bool>(true));
        QCOMPARE(Appearance::darkFromColorScheme(2), std::optional<bool>(false));
        QCOMPARE(Appearance::darkFromColorScheme(7), std::nullopt);
    }

    void kdeGlobals_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<int>("expected");
        QTest::newRow("animations off") << QByteArray("[KDE]\nAnimationDurationFactor=0\n") << 1;
        QTest::newRow("slow animations") << QByteArray("[KDE]\nAnimationDurationFactor=2\n") << 0;
        QTest::newRow("not a number") << QByteArray("[KDE]\nAnimationDurationFactor=fast\n") << -1;
        QTest::newRow("malformed file") << QByteArray("\x01\x02[[[=\n") << -1;
    }

    void kdeGlobals()
    {
        QFETCH(QByteArray, contents);
        QFETCH(int, expected);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("kdeglobals"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        const auto result = Appearance::reducedFromKdeGlobals(path);
        QCOMPARE(result ? int(*result) : -1, expected);
        QCOMPARE(Appearance::reducedFromKdeGlobals(dir.filePath(QStringLiteral("missing"))), std::nullopt);
    }

    void environmentWins()
    {
        {
            ScopedEnv appearance("SORVEL_APPEARANCE", "light");
            ScopedEnv motion("SORVEL_REDUCE_MOTION", "1");
            Appearance look;
            QVERIFY(!look.isDark());
            QVERIFY(look.reducedMotion());
        }
        {
            ScopedEnv appearance("SORVEL_APPEARANCE", "dark");
            ScopedEnv motion("SORVEL_REDUCE_MOTION", "0");
            Appearance look;
            QVERIFY(look.isDark());
            QVERIFY(!look.reducedMotion());
        }
    }

    void kdeGlobalsInTheConfigFolder()
    {
        // The test main's private XDG config folder stands in for the user's.
        const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        QDir().mkpath(config);
        QFile file(config + QStringLiteral("/kdeglobals"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[KDE]\nAnimationDurationFactor=0\n");
        file.close();
        ScopedEnv motion("SORVEL_REDUCE_MOTION", "");
        Appearance look;
        QVERIFY(look.reducedMotion());
        QVERIFY(file.remove());
    }

    void paletteChangeIsFollowed()
    {
        ScopedEnv appearance("SORVEL_APPEARANCE", "");
        const QPalette original = QGuiApplication::palette();
        QPalette light;
        light.setColor(QPalette::Window, QColor(240, 240, 240));
        light.setColor(QPalette::WindowText, QColor(20, 20, 20));
        QGuiApplication::setPalette(light);
        Appearance look;
        QVERIFY(!look.isDark());
        QSignalSpy changed(&look, &Appearance::changed);
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(30, 30, 30));
        dark.setColor(QPalette::WindowText, QColor(230, 230, 230));
        QGuiApplication::setPalette(dark);
        QCoreApplication::processEvents();
        QVERIFY(look.isDark());
        QCOMPARE(changed.count(), 1);
        QGuiApplication::setPalette(original);
    }
};

SORVEL_TEST(AppearanceTest);
#include "tst_appearance.moc"
