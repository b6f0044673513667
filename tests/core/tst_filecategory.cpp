#include "TestMain.h"

#include "core/FileCategory.h"

#include <QSet>

#include <thread>

class TestFileCategory : public QObject
{
    Q_OBJECT

private slots:
    void tables()
    {
        QSet<QString> ids;
        for (FileCategory c : FileCategory::allCases) {
            ids.insert(c.id());
            QCOMPARE(FileCategory::fromRawValue(c.id()), std::optional<FileCategory>(c));
        }
        QCOMPARE(ids.size(), int(FileCategory::allCases.size()));
        QVERIFY(!FileCategory::fromRawValue(u"Video"));
    }

    // A bare extension goes to classify, a row starting "name:" to forFileName.
    void classify_data()
    {
        QTest::addColumn<QByteArray>("ext");
        QTest::addColumn<int>("category");
        QTest::newRow("mov") << QByteArray("mov") << int(FileCategory::video);
        QTest::newRow("upper case is not folded") << QByteArray("MOV") << int(FileCategory::other);
        QTest::newRow("empty") << QByteArray("") << int(FileCategory::other);
        QTest::newRow("key is a document") << QByteArray("key") << int(FileCategory::document);
        QTest::newRow("last of the table") << QByteArray("ipsw") << int(FileCategory::developer);
        QTest::newRow("with a dot") << QByteArray(".mov") << int(FileCategory::other);
        QTest::newRow("prefix of a key") << QByteArray("mp") << int(FileCategory::other);
        QTest::newRow("key plus a letter") << QByteArray("mp44") << int(FileCategory::other);
        QTest::newRow("upper case folded") << QByteArray("name:CLIP.MoV") << int(FileCategory::video);
        QTest::newRow("leading dot only") << QByteArray("name:.mov") << int(FileCategory::other);
        QTest::newRow("leading dot and extension") << QByteArray("name:.hidden.mov") << int(FileCategory::video);
        QTest::newRow("trailing dot") << QByteArray("name:clip.mov.") << int(FileCategory::other);
        QTest::newRow("two extensions") << QByteArray("name:backup.tar.gz") << int(FileCategory::archive);
        QTest::newRow("no extension") << QByteArray("name:Makefile") << int(FileCategory::other);
        QTest::newRow("15 bytes") << QByteArray("name:x.imovielibrary") << int(FileCategory::video);
        QTest::newRow("16 bytes") << QByteArray("name:x.imovielibraryx") << int(FileCategory::other);
        QTest::newRow("long") << QByteArray("name:x.") + QByteArray(300, 'a') << int(FileCategory::other);
        QTest::newRow("non-ASCII not folded") << QByteArray("name:x.M\xc3\x93V") << int(FileCategory::other);
    }

    void packages()
    {
        QVERIFY(FileCategory::isPackageExtension("key"));
        QVERIFY(!FileCategory::isPackageExtension("dmg"));
        QVERIFY(!FileCategory::isPackageExtension("APP"));
        QVERIFY(!FileCategory::isPackageExtension(""));
    }

    void classify()
    {
        QFETCH(QByteArray, ext);
        QFETCH(int, category);
        if (ext.startsWith("name:"))
            QCOMPARE(int(FileCategory::forFileName(ext.mid(5))), category);
        else
            QCOMPARE(int(FileCategory::classify(ext)), category);
    }

    // Lookups race from several threads; the table must come out whole for all.
    void concurrentLookups()
    {
        std::vector<std::thread> threads;
        std::atomic<int> wrong{0};
        for (int t = 0; t < 8; ++t) {
            threads.emplace_back([&] {
                for (int i = 0; i < 20000; ++i) {
                    if (FileCategory::classify("mkv") != FileCategory::video ||
                        FileCategory::classify("zip") != FileCategory::archive ||
                        !FileCategory::isPackageExtension("app"))
                        ++wrong;
                }
            });
        }
        for (auto &t : threads)
            t.join();
        QCOMPARE(wrong.load(), 0);
    }
};

SORVEL_TEST(TestFileCategory);
#include "tst_filecategory.moc"
