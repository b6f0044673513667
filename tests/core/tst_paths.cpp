#include "TestMain.h"

#include "core/Paths.h"

#include <QSet>
#include <QTemporaryDir>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The marks, embeddings, overrides and isolates of bidirectional text.
bool directional(char16_t c)
{
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

} // namespace

class TestPaths : public QObject
{
    Q_OBJECT

private slots:
    void textRoundTrip_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("utf8") << QByteArray("/Users/j\xc3\xbcrgen/R\xc3\xa9sum\xc3\xa9.pdf");
        QTest::newRow("emoji (surrogate pair)") << QByteArray("/tmp/\xf0\x9f\x93\x81 files");
        QTest::newRow("truncated sequence") << QByteArray("/tmp/\xe2\x82");
        QTest::newRow("overlong slash") << QByteArray("/tmp/\xc0\xaf");
        QTest::newRow("encoded surrogate") << QByteArray("/tmp/\xed\xa0\x80\xed\xb0\x80");
        QTest::newRow("beyond U+10FFFF") << QByteArray("/tmp/\xf4\x90\x80\x80");
        QTest::newRow("emoji then raw byte") << QByteArray("/tmp/\xf0\x9f\x98\x80\xdc");
        QTest::newRow("all high bytes") << [] {
            QByteArray b("/x/");
            for (int c = 0x80; c <= 0xff; ++c)
                b += char(c);
            return b;
        }();
    }

    void textRoundTrip()
    {
        QFETCH(QByteArray, bytes);
        const QString text = Paths::toText(bytes);
        QCOMPARE(Paths::fromText(text), bytes);
        // Text that went through a JSON or QML string comes back the same too.
        QCOMPARE(Paths::fromText(QString(text.constData(), text.size())), bytes);
        QVERIFY(!Paths::toDisplay(bytes).isEmpty());
    }

    // What people read: one line, in its own order, every odd byte named.
    void displayIsSafe_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("shown");
        QTest::newRow("accented") << QByteArray("caf\xc3\xa9") << u"caf\u00e9"_qs;
        QTest::newRow("invalid byte") << QByteArray("caf\xe9") << u"caf\\xE9"_qs;
        QTest::newRow("cut sequence") << QByteArray("a\xe2\x82") << u"a\\xE2\\x82"_qs;
        QTest::newRow("newline, tab, return") << QByteArray("a\nb\tc\rd") << u"a\\nb\\tc\\rd"_qs;
        QTest::newRow("escape, DEL") << QByteArray("\x1b[31m\x7f") << u"\\x1B[31m\\x7F"_qs;
        QTest::newRow("C1 control") << QByteArray("a\xc2\x85z") << u"a\\u0085z"_qs;
        QTest::newRow("backslash") << QByteArray("a\\xFF") << u"a\\\\xFF"_qs;
        QTest::newRow("override") << QByteArray("photo\xe2\x80\xaegnp.exe") << u"photo\\u202Egnp.exe"_qs;
        QTest::newRow("isolate, mark, separator")
            << QByteArray("\xe2\x81\xa6x\xe2\x80\x8f\xe2\x80\xa8") << u"\\u2066x\\u200F\\u2028"_qs;
        QTest::newRow("right to left") << QByteArray("/a/\xd7\xa9\xd7\x9c.txt/b")
                                       << u"/a/\u2068\u05e9\u05dc.txt\u2069/b"_qs;
        QTest::newRow("override in one piece")
            << QByteArray("/x\xe2\x80\xae/\xd8\xa7\xe2\x80\xaby/z") << u"/x\\u202E/\u2068\u0627\\u202By\u2069/z"_qs;
    }

    void displayIsSafe()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, shown);
        QCOMPARE(Paths::toDisplay(bytes), shown);
    }

    // Whatever the bytes, the shown text holds no control character, no
    // directional control but the balanced isolates around a piece, and no
    // replacement mark; different names never read the same.
    void displayNeverActsOnText()
    {
        QSet<QString> seen;
        for (int c = 0; c < 256; ++c) {
            for (const QByteArray &bytes :
                 {QByteArray(1, char(c)), QByteArray("\xe2\x80") + char(c), QByteArray("\xd8\xa7") + char(c)}) {
                const QString text = Paths::toDisplay(bytes);
                int open = 0;
                for (const QChar ch : text) {
                    QVERIFY2(ch.category() != QChar::Other_Control, qPrintable(text));
                    QVERIFY(ch != QChar::ReplacementCharacter);
                    if (ch.unicode() == 0x2068)
                        ++open;
                    else if (ch.unicode() == 0x2069)
                        QVERIFY(--open >= 0);
                    else
                        QVERIFY2(!directional(ch.unicode()) && ch.category() != QChar::Separator_Line &&
                                     ch.category() != QChar::Separator_Paragraph,
                                 qPrintable(text));
                }
                QCOMPARE(open, 0);
                QVERIFY2(!seen.contains(text), qPrintable(text));
                seen.insert(text);
            }
        }
    }

    // A real file whose name is not UTF-8 and holds a newline: the bytes that the
    // directory listing gives back reach the file again after a trip through text.
    void realFileSurvivesTextTrip()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray base = QFile::encodeName(dir.path());
        const QByteArray name("bad\xff\xfe name\nwith newline \xe9t\xe9");
        const QByteArray path = Paths::join(base, name);
        const int fd = ::open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        QVERIFY(fd >= 0);
        QCOMPARE(::write(fd, "x", 1), ssize_t(1));
        ::close(fd);

        QByteArray listed;
        DIR *d = ::opendir(base.constData());
        QVERIFY(d);
        while (dirent *e = ::readdir(d)) {
            if (qstrcmp(e->d_name, ".") && qstrcmp(e->d_name, ".."))
                listed = QByteArray(e->d_name);
        }
        ::closedir(d);
        QCOMPARE(listed, name);

        const QString text = Paths::toText(Paths::join(base, listed));
        const QByteArray back = Paths::fromText(text);
        struct stat st {};
        QCOMPARE(::lstat(back.constData(), &st), 0);
        QCOMPARE(st.st_size, off_t(1));
        QCOMPARE(::unlink(back.constData()), 0);
    }

    void canonicalEquivalence()
    {
        const QByteArray composed("/Users/ren\xc3\xa9");    // é as one code point
        const QByteArray decomposed("/Users/rene\xcc\x81"); // e + combining acute
        QVERIFY(composed != decomposed);
        QVERIFY(Paths::equal(composed, decomposed));
        QVERIFY(Paths::isWithin(decomposed + "/Documents", composed));
        QVERIFY(Paths::startsWith(composed + "/x", decomposed));
        QCOMPARE(Paths::comparable(decomposed), Paths::comparable(composed));
        // Invalid UTF-8 compares by bytes only.
        QVERIFY(!Paths::equal(QByteArray("/a\xff"), QByteArray("/a\xfe")));
        QVERIFY(Paths::equal(QByteArray("/a\xff"), QByteArray("/a\xff")));
        QVERIFY(!Paths::equal("/a/b", "/a/B"));
    }

    void within_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("dir");
        QTest::addColumn<bool>("within");
        QTest::addColumn<bool>("below");
        QTest::newRow("same") << QByteArray("/a/b") << QByteArray("/a/b") << true << false;
        QTest::newRow("child") << QByteArray("/a/b/c") << QByteArray("/a/b") << true << true;
        QTest::newRow("sibling with longer name") << QByteArray("/a/bc") << QByteArray("/a/b") << false << false;
        QTest::newRow("dir with trailing slash") << QByteArray("/a/b/c") << QByteArray("/a/b/") << true << true;
        QTest::newRow("under root") << QByteArray("/etc") << QByteArray("/") << true << true;
        QTest::newRow("root itself") << QByteArray("/") << QByteArray("/") << true << false;
        QTest::newRow("parent is not within") << QByteArray("/a") << QByteArray("/a/b") << false << false;
        QTest::newRow("bare slash after dir") << QByteArray("/a/") << QByteArray("/a") << false << false;
    }

    void within()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, dir);
        QFETCH(bool, within);
        QFETCH(bool, below);
        QCOMPARE(Paths::isWithin(path, dir), within);
        QCOMPARE(Paths::isBelow(path, dir), below);
    }

    void components()
    {
        QCOMPARE(Paths::lastComponent("/"), QByteArray("/"));
        QCOMPARE(Paths::lastComponent("/usr/lib/"), QByteArray("lib"));
        QCOMPARE(Paths::lastComponent("name"), QByteArray("name"));
        QCOMPARE(Paths::parentOf("/usr"), QByteArray("/"));
        QCOMPARE(Paths::parentOf("/usr/lib/"), QByteArray("/usr"));
        QCOMPARE(Paths::parentOf("/"), QByteArray());
        QCOMPARE(Paths::join("/", "etc"), QByteArray("/etc"));
        QCOMPARE(Paths::extension("a.tar.gz"), QByteArrayView("gz"));
        QCOMPARE(Paths::extension(".profile"), QByteArrayView());
        QCOMPARE(Paths::extension("README"), QByteArrayView());
        QCOMPARE(Paths::extension("trailing."), QByteArrayView(""));
    }
};

SORVEL_TEST(TestPaths);
#include "tst_paths.moc"
