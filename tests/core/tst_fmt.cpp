#include "TestMain.h"

#include "core/Fmt.h"

#include <QDateTime>
#include <QLocale>

#include <limits>

class TestFmt : public QObject
{
    Q_OBJECT

private slots:
    void init() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void bytes_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << qint64(0) << QStringLiteral("Zero kB");
        QTest::newRow("1") << qint64(1) << QStringLiteral("1 byte");
        QTest::newRow("2") << qint64(2) << QStringLiteral("2 bytes");
        QTest::newRow("1000") << qint64(1000) << QStringLiteral("1 kB");
        QTest::newRow("1499") << qint64(1499) << QStringLiteral("1 kB");
        QTest::newRow("1500") << qint64(1500) << QStringLiteral("2 kB");
        QTest::newRow("999,499") << qint64(999499) << QStringLiteral("999 kB");
        QTest::newRow("999,500") << qint64(999500) << QStringLiteral("1 MB");
        QTest::newRow("1,050,000") << qint64(1050000) << QStringLiteral("1.1 MB");
        QTest::newRow("999,949,999") << qint64(999949999) << QStringLiteral("999.9 MB");
        QTest::newRow("999,950,000") << qint64(999950000) << QStringLiteral("1 GB");
        QTest::newRow("1,205,000,000") << qint64(1205000000) << QStringLiteral("1.21 GB");
        QTest::newRow("999,995,000,000") << qint64(999995000000) << QStringLiteral("1 TB");
        QTest::newRow("int64 max") << std::numeric_limits<qint64>::max() << QStringLiteral("9.22 EB");
        QTest::newRow("int64 min") << std::numeric_limits<qint64>::min() << QStringLiteral("-9.22 EB");
    }

    void bytes()
    {
        QFETCH(qint64, count);
        QFETCH(QString, text);
        QCOMPARE(Fmt::bytes(count), text);
    }

    void bytesFollowTheLocale()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        QCOMPARE(Fmt::bytes(1234567), QStringLiteral("1,2 MB"));
        QCOMPARE(Fmt::bytes(1234567890), QStringLiteral("1,23 GB"));
    }

    // Durations and percentages, the number as given.
    void numbers_data()
    {
        QTest::addColumn<bool>("isPercent");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        const auto row = [](bool isPercent, double value, const char *text) {
            QTest::addRow("%s %g", isPercent ? "percent" : "duration", value)
                << isPercent << value << QString::fromUtf8(text);
        };
        row(false, 0.0, "0.0s");
        row(false, 0.25, "0.2s");   // ties to even
        row(false, 0.0999, "0.1s"); // truncated to milliseconds first
        row(false, 0.9996, "1.0s"); // stays below a second
        row(false, 1.0, "1s");
        row(false, 1.5, "2s");  // rounds away from zero
        row(false, 59.6, "1m"); // rounds first
        row(false, 3725.0, "62m 5s");
        row(true, 0.0, "0%");
        row(true, 0.0001, "0.0%");
        row(true, 0.0999, "10.0%");
        row(true, 0.1, "10%");
    }

    void numbers()
    {
        QFETCH(bool, isPercent);
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(isPercent ? Fmt::percent(value) : Fmt::duration(value), text);
    }

    void displayName()
    {
        const QByteArray home("/Users/sample");
        QCOMPARE(Fmt::displayName("/", Platform::linux, home), QStringLiteral("File System"));
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        QCOMPARE(Fmt::displayName("/", Platform::macOS, home), QStringLiteral("Macintosh HD"));
        QCOMPARE(Fmt::displayName(home, Platform::macOS, home), QStringLiteral("Home"));
        QCOMPARE(Fmt::displayName("/Volumes/Backup", Platform::linux, home), QStringLiteral("Backup"));
        QCOMPARE(Fmt::displayName("/x/caf\xe9", Platform::linux, home), QStringLiteral("caf\\xE9"));
        // The running system's own home.
        QCOMPARE(Fmt::displayName(Platform::homeDirectory()), QStringLiteral("Home"));
    }

    void relativeDate_data()
    {
        QTest::addColumn<qint64>("offset");
        QTest::addColumn<QString>("text");
        constexpr qint64 day = 86400;
        QTest::newRow("now") << qint64(0) << QStringLiteral("now");
        QTest::newRow("1 s") << qint64(-1) << QStringLiteral("1 second ago");
        QTest::newRow("1 min") << qint64(-61) << QStringLiteral("1 minute ago");
        QTest::newRow("yesterday") << -day << QStringLiteral("yesterday");
        QTest::newRow("2 days") << -2 * day << QStringLiteral("2 days ago");
        QTest::newRow("last week") << -8 * day << QStringLiteral("last week");
        QTest::newRow("last month") << -40 * day << QStringLiteral("last month");
        QTest::newRow("last year") << -400 * day << QStringLiteral("last year");
        QTest::newRow("tomorrow") << day << QStringLiteral("tomorrow");
        QTest::newRow("in 3 days") << 3 * day << QStringLiteral("in 3 days");
    }

    void relativeDate()
    {
        QFETCH(qint64, offset);
        QFETCH(QString, text);
        const double now = double(QDateTime(QDate(2026, 6, 15), QTime(12, 0)).toSecsSinceEpoch());
        QCOMPARE(Fmt::relativeDate(now + double(offset), now), text);
    }
};

SORVEL_TEST(TestFmt);
#include "tst_fmt.moc"
