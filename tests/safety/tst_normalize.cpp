#include "TestMain.h"

#include "scan/DiskScanner.h"

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
        QTest::newRow("dot dot") << QByteArray("/usr/../usr/bin/./ls/") << QByteArray("/usr/bin/ls");
        QTest::newRow("dot dot at the end") << QByteArray("/a/b/..") << QByteArray("/a");
        QTest::newRow("dot dot above root") << QByteArray("/../../a/..") << QByteArray("/");
        QTest::newRow("three dots are a name") << QByteArray("/a/.../b") << QByteArray("/a/.../b");
        QTest::newRow("hidden names") << QByteArray("/a/.b/..c") << QByteArray("/a/.b/..c");
        QTest::newRow("relative hangs from root") << QByteArray("a/b") << QByteArray("/a/b");
        QTest::newRow("tilde") << QByteArray("~") << home;
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
        QCOMPARE(DiskScanner::normalize(path), expected);
        QCOMPARE(DiskScanner::normalize(expected), expected);
    }
};

SORVEL_TEST(TestNormalize);
#include "tst_normalize.moc"
