#include "TestMain.h"

#include "core/Paths.h"

#include <QTemporaryDir>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

class TestPaths : public QObject
{
    Q_OBJECT

private slots:
    void textRoundTrip_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("utf8") << QByteArray("/Users/j\xc3\xbcrgen/R\xc3\xa9sum\xc3\xa9.pdf");
        QTest::newRow("emoji (surrogate pair)") << QByteArray("/tmp/\xf0\x9f\x93\x81 files");
        QTest::newRow("latin1 byte") << QByteArray("/tmp/caf\xe9");
        QTest::newRow("lone continuation") << QByteArray("/tmp/\x80\x81\xbf");
        QTest::newRow("truncated sequence") << QByteArray("/tmp/\xe2\x82");
        QTest::newRow("overlong slash") << QByteArray("/tmp/\xc0\xaf");
        QTest::newRow("encoded surrogate") << QByteArray("/tmp/\xed\xa0\x80\xed\xb0\x80");
        QTest::newRow("beyond U+10FFFF") << QByteArray("/tmp/\xf4\x90\x80\x80");
        QTest::newRow("emoji then raw byte") << QByteArray("/tmp/\xf0\x9f\x98\x80\xdc");
        QTest::newRow("newline and tab") << QByteArray("/tmp/a\nb\tc");
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

    void displayHidesEscapes()
    {
        const QString shown = Paths::toDisplay(QByteArray("caf\xe9"));
        QCOMPARE(shown, QStringLiteral("caf") + QChar(QChar::ReplacementCharacter));
        QCOMPARE(Paths::toDisplay(QByteArray("caf\xc3\xa9")), QStringLiteral("caf\u00e9"));
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
        QCOMPARE(Paths::join("/usr", "lib"), QByteArray("/usr/lib"));
        QCOMPARE(Paths::extension("a.tar.gz"), QByteArrayView("gz"));
        QCOMPARE(Paths::extension(".profile"), QByteArrayView());
        QCOMPARE(Paths::extension("README"), QByteArrayView());
        QCOMPARE(Paths::extension("trailing."), QByteArrayView(""));
    }
};

SORVEL_TEST(TestPaths);
#include "tst_paths.moc"
