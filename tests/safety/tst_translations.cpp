#include "TestMain.h"

#include "core/Translations.h"
#include "safety/RiskCatalog.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>
#include <QTranslator>

// The Linux wording table: compiled into the engine, loaded on Linux only, and
// covering every sentence of the guard and the catalogue that names macOS.
class TestTranslations : public QObject
{
    Q_OBJECT

    QTranslator *m_translator = nullptr;

private slots:
    void initTestCase()
    {
        QVERIFY(!Translations::install(Platform::macOS));
        m_translator = Translations::install(Platform::linux);
        QVERIFY(m_translator);
    }

    void cleanupTestCase()
    {
        QCoreApplication::removeTranslator(m_translator);
        delete m_translator;
        // Back to the source texts for whatever runs next.
        QCOMPARE(SafetyGuard::reason("/usr/bin/ls"), QStringLiteral("Part of macOS, never touched"));
    }

    // No verdict reachable on Linux outside ~/Library, nor the summary, speaks of
    // Apple's software.
    void noAppleWordsOnLinux()
    {
        const SafetyProfile profile(Platform::linux, "/home/sample");
        const QList<QByteArray> paths = {"/",          "/usr/bin/ls", "/media/a/b",          "~",
                                         "~/.config",  "~/.ssh/x",    "~/x/node_modules",    "~/Downloads/a.deb",
                                         "~/.cache/x", "~/.cache",    "~/.var/app/a/cache/b"};
        for (const QByteArray &path : paths) {
            for (bool isBuildOutput : {false, true}) {
                const Risk risk = RiskCatalog::assess(path, true, isBuildOutput, std::nullopt, profile);
                for (const QString &text : {risk.title, risk.why, SafetyGuard::reason(path, profile)}) {
                    QVERIFY2(!text.contains(QLatin1String("macOS")) && !text.contains(QLatin1String("Apple")) &&
                                 !text.contains(QLatin1String("xcodebuild")),
                             qPrintable(text));
                }
            }
        }
        for (const RiskCatalog::SummaryRow &row : RiskCatalog::summary(profile)) {
            for (const QString &line : row.lines) {
                for (const char *word : {"macOS", "Apple", "Xcode", "iCloud", "Library", "Keychain", ".dmg"})
                    QVERIFY2(!line.contains(QLatin1String(word)), qPrintable(line));
            }
        }
    }
};

SORVEL_TEST(TestTranslations);
#include "tst_translations.moc"
