#include "TestMain.h"

#include "ScopedEnv.h"
#include "core/Paths.h"

#include <pwd.h>

class TestNormalize : public QObject
{
    Q_OBJECT

private slots:
    void normalize_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray home = TestMain::home();

        QTest::newRow("empty") << QByteArray() << QByteArray("/");
        QTest::newRow("root") << QByteArray("/") << QByteArray("/");
        QTest::newRow("slashes only") << QByteArray("///") << QByteArray("/");
        QTest::newRow("trailing slash") << QByteArray("/a/b/") << QByteArray("/a/b");
        QTest::newRow("doubled slashes") << QByteArray("//a///b//") << QByteArray("/a/b");
        QTest::newRow("dot") << QByteArray("/a/./b/.") << QByteArray("/a/b");
        QTest::newRow("dot dot at the end") << QByteArray("/a/b/..") << QByteArray("/a");
        QTest::newRow("dot dot above root") << QByteArray("/../../a/..") << QByteArray("/");
        QTest::newRow("three dots are a name") << QByteArray("/a/.../b") << QByteArray("/a/.../b");
        QTest::newRow("hidden names") << QByteArray("/a/.b/..c") << QByteArray("/a/.b/..c");
        QTest::newRow("relative hangs from root") << QByteArray("a/b") << QByteArray("/a/b");
        QTest::newRow("lone dot") << QByteArray(".") << QByteArray("/");
        QTest::newRow("tilde") << QByteArray("~") << home;
        QTest::newRow("tilde slash") << QByteArray("~/") << home;
        QTest::newRow("tilde path") << QByteArray("~/x/../.ssh//") << home + "/.ssh";
        QTest::newRow("tilde inside") << QByteArray("/a/~/b") << QByteArray("/a/~/b");
        // The root user's home differs between systems; ask the password database.
        const passwd *root = ::getpwnam("root");
        QVERIFY(root && root->pw_dir);
        QTest::newRow("tilde of root user") << QByteArray("~root/x") << QByteArray(root->pw_dir) + "/x";
        QTest::newRow("tilde of no user") << QByteArray("~no-such-user-here/x") << QByteArray("/~no-such-user-here/x");
        QTest::newRow("invalid UTF-8") << QByteArray("/a/\xff\xfe/./b") << QByteArray("/a/\xff\xfe/b");
        QTest::newRow("newline in a name") << QByteArray("/a/b\nc/") << QByteArray("/a/b\nc");
    }

    void normalize()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, expected);
        QCOMPARE(Paths::normalize(path), expected);
        QCOMPARE(Paths::normalize(expected), expected);
    }

    void expandTilde_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray home = TestMain::home();
        const passwd *root = ::getpwnam("root");
        QVERIFY(root && root->pw_dir);

        QTest::newRow("tilde path") << QByteArray("~/a/../b") << home + "/a/../b";
        QTest::newRow("root user") << QByteArray("~root") << QByteArray(root->pw_dir);
        QTest::newRow("no such user") << QByteArray("~no-such-user-here/x") << QByteArray("~no-such-user-here/x");
        QTest::newRow("relative") << QByteArray("a~") << QByteArray("a~");
        QTest::newRow("empty") << QByteArray() << QByteArray();
    }

    void expandTilde()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, expected);
        QCOMPARE(Paths::expandTilde(path), expected);
    }

    // A home of "/" gives no doubled slash, and normalize agrees with the expansion.
    void expandTildeWithRootHome()
    {
        const ScopedEnv home("HOME", "/");
        QCOMPARE(Paths::expandTilde("~"), QByteArray("/"));
        QCOMPARE(Paths::expandTilde("~/x"), QByteArray("/x"));
        QCOMPARE(Paths::normalize("~/x/"), QByteArray("/x"));
        QCOMPARE(Paths::normalize("~"), QByteArray("/"));
    }

    void abbreviateHome_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("home");
        QTest::addColumn<QString>("expected");
        const QByteArray eComposed("\xc3\xa9");
        const QByteArray eDecomposed("e\xcc\x81");

        QTest::newRow("home itself") << QByteArray("/h/u") << QByteArray("/h/u") << u"~"_qs;
        QTest::newRow("below home") << QByteArray("/h/u/Documents/a") << QByteArray("/h/u") << u"~/Documents/a"_qs;
        QTest::newRow("name sharing a prefix") << QByteArray("/h/user") << QByteArray("/h/u") << u"/h/user"_qs;
        QTest::newRow("outside") << QByteArray("/usr/bin") << QByteArray("/h/u") << u"/usr/bin"_qs;
        QTest::newRow("home is the root") << QByteArray("/usr") << QByteArray("/") << u"/usr"_qs;
        QTest::newRow("no home") << QByteArray("/usr") << QByteArray() << u"/usr"_qs;
        QTest::newRow("home in the other normal form")
            << QByteArray("/h/" + eDecomposed) << QByteArray("/h/" + eComposed) << u"~"_qs;
        QTest::newRow("invalid UTF-8 below home")
            << QByteArray("/h/u/caf\xe9") << QByteArray("/h/u") << u"~/caf\\xE9"_qs;
    }

    void abbreviateHome()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, home);
        QFETCH(QString, expected);
        QCOMPARE(Paths::abbreviateHome(path, home), expected);
    }

    void abbreviateHomeUsesTheHomeFolder()
    {
        const QByteArray home = TestMain::home();
        QCOMPARE(Paths::abbreviateHome(home + "/x"), u"~/x"_qs);
        QCOMPARE(Paths::abbreviateHome(QByteArray("/")), u"/"_qs);
    }
};

SORVEL_TEST(TestNormalize);
#include "tst_normalize.moc"
