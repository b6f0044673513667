#include "TestMain.h"

#include "IconCache.h"
#include "SymbolProvider.h"
#include "Symbols.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QTemporaryDir>

namespace {

// The colour of the most opaque pixel, and how many pixels are drawn at all.
struct Ink {
    QColor strongest;
    int drawn = 0;
};

Ink inkOf(const QImage &image)
{
    Ink ink;
    int best = 0;
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < argb.height(); ++y) {
        for (int x = 0; x < argb.width(); ++x) {
            const QRgb pixel = argb.pixel(x, y);
            if (qAlpha(pixel) > 0)
                ++ink.drawn;
            if (qAlpha(pixel) > best) {
                best = qAlpha(pixel);
                ink.strongest = QColor::fromRgba(pixel);
            }
        }
    }
    return ink;
}

QStringList tableNames()
{
    QFile table(QStringLiteral(SORVEL_SYMBOL_TABLE));
    if (!table.open(QIODevice::ReadOnly))
        return {};
    QStringList names;
    for (const QByteArray &line : table.readAll().split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith('#'))
            continue;
        names << QString::fromUtf8(trimmed.split(' ').value(0));
    }
    return names;
}

} // namespace

class SymbolsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNameOfTheTableIsBuiltIn()
    {
        const QStringList names = tableNames();
        QVERIFY(names.size() > 30);
        for (const QString &name : names) {
            QVERIFY2(Symbols::has(name), qPrintable(name));
            QVERIFY2(inkOf(Symbols::render(name, Qt::black, QSize(24, 24))).drawn > 0, qPrintable(name));
        }
        QVERIFY(!Symbols::has(QStringLiteral("no.such.symbol")));
        QVERIFY(!Symbols::has(QStringLiteral("../LICENSE.lucide")));
    }

    // The colour asked for, translucency included, is the colour drawn.
    void drawnInTheColourAsked()
    {
        const QImage image = Symbols::render(QStringLiteral("stop.fill"), QColor(0, 200, 100), QSize(32, 32));
        QCOMPARE(inkOf(image).strongest.rgb(), QColor(0, 200, 100).rgb());
        const Ink ink = inkOf(Symbols::render(QStringLiteral("stop.fill"), QColor(255, 0, 0, 128), QSize(32, 32)));
        QVERIFY(ink.strongest.alpha() >= 120 && ink.strongest.alpha() <= 136);
        QVERIFY(inkOf(Symbols::render(QStringLiteral("no.such.symbol"), Qt::black, QSize(24, 24))).drawn > 0);
    }

    void providerReadsColourAndNameFromTheUrl()
    {
        const QUrl url = Symbols::source(QStringLiteral("house.fill"), QColor(10, 20, 30, 255));
        SymbolProvider provider;
        QSize size;
        const QImage image = provider.requestImage(url.path().mid(1), &size, QSize(20, 0));
        QCOMPARE(size, QSize(20, 20));
        const Ink ink = inkOf(image);
        QVERIFY(ink.drawn > 0);
        QCOMPARE(ink.strongest.rgb(), QColor(10, 20, 30).rgb());
    }

    void fileIconNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("folder");
        QTest::addColumn<QString>("first");
        QTest::newRow("folder") << QByteArray("Projects") << true << QStringLiteral("folder");
        QTest::newRow("image") << QByteArray("photo.png") << false << QStringLiteral("image-png");
        QTest::newRow("invalid UTF-8") << QByteArray("caf\xe9.txt") << false << QStringLiteral("text-plain");
    }

    void fileIconNames()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, folder);
        QFETCH(QString, first);
        QTemporaryDir dir;
        const QByteArray path = QFile::encodeName(dir.path()) + '/' + name;
        if (folder)
            QVERIFY(QDir().mkdir(QFile::decodeName(path)));
        else {
            QFile file(QFile::decodeName(path));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(name.endsWith(".png") ? QByteArray("\x89PNG\r\n\x1a\n") : QByteArray("hello\n"));
        }
        const QStringList names = IconCache::iconNames(path);
        QVERIFY(!names.isEmpty());
        QCOMPARE(names.first(), first);
    }

    void vanishedFileIsJudgedByItsName()
    {
        const QStringList names = IconCache::iconNames(TestMain::home() + "/gone/movie.mp4");
        QVERIFY(!names.isEmpty());
        QVERIFY(names.first().startsWith(QStringLiteral("video-")));
    }

    // Every file of a kind shares one URL, so Qt Quick keeps one picture of
    // it however many tiles show it; the theme is asked once per kind and size.
    void filesOfOneKindShareOneIcon()
    {
        QTemporaryDir dir;
        QVERIFY(QDir().mkdir(dir.filePath(QStringLiteral("sub"))));
        const QByteArray root = QFile::encodeName(dir.path());
        for (const char *name : {"a.txt", "caf\xe9 #?%.txt", "b.png"}) {
            QFile file(QFile::decodeName(root + '/' + name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const QUrl text = IconCache::source(root + "/a.txt");
        QCOMPARE(IconCache::source(root + "/caf\xe9 #?%.txt"), text);
        QVERIFY(IconCache::source(root + "/b.png") != text);
        QVERIFY(IconCache::source(root + "/sub") != text);
        QVERIFY(IconCache::stainedSource(root + "/a.txt", 3) != IconCache::stainedSource(root + "/a.txt", 4));

        IconCache cache;
        QSize size;
        const QPixmap first = cache.requestPixmap(text.path().mid(1), &size, QSize(48, 48));
        QVERIFY(!first.isNull());
        QCOMPARE(size, first.size());
        QCOMPARE(cache.lookups(), 1);
        QCOMPARE(cache.pixmap(root + "/caf\xe9 #?%.txt", 48).cacheKey(), first.cacheKey());
        QCOMPARE(cache.lookups(), 1);
        QVERIFY(!cache.pixmap(root + "/a.txt", 64).isNull());
        QCOMPARE(cache.lookups(), 2);

        // A stained icon is the kind's icon with the grime over it.
        const QUrl stained = IconCache::stainedSource(root + "/a.txt", 7);
        const QPixmap grimy = cache.requestPixmap(stained.path().mid(1), &size, QSize(48, 48));
        QCOMPARE(grimy.size(), first.size());
        QVERIFY(grimy.toImage() != first.toImage());
        QCOMPARE(cache.lookups(), 2);
    }
};

SORVEL_TEST(SymbolsTest);
#include "tst_symbols.moc"
