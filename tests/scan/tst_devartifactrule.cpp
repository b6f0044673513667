#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/DevArtifactRule.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

class TestDevArtifactRule : public QObject
{
    Q_OBJECT

private slots:
    // Each row makes project/<folder> and the listed project files, then asks
    // the rule about the folder. "dir:" makes a project file that is a folder;
    // "in:" puts it inside the folder instead of beside it.
    void match_data()
    {
        QTest::addColumn<QByteArray>("folder");
        QTest::addColumn<QByteArrayList>("files");
        QTest::addColumn<QString>("kind");

        const QString none;
        QTest::newRow("node_modules") << QByteArray("node_modules") << QByteArrayList{} << "Node.js dependencies";
        QTest::newRow("Pods with Podfile") << QByteArray("Pods") << QByteArrayList{"Podfile"} << "CocoaPods";
        QTest::newRow("Pods, Podfile inside") << QByteArray("Pods") << QByteArrayList{"in:Podfile"} << none;
        QTest::newRow(".build with Package.swift")
            << QByteArray(".build") << QByteArrayList{"Package.swift"} << "Swift build";
        QTest::newRow(".build alone") << QByteArray(".build") << QByteArrayList{} << none;
        QTest::newRow("target with Cargo.toml") << QByteArray("target") << QByteArrayList{"Cargo.toml"} << "Rust build";
        QTest::newRow("target with pom.xml") << QByteArray("target") << QByteArrayList{"pom.xml"} << "Maven build";
        QTest::newRow("target with both")
            << QByteArray("target") << QByteArrayList{"pom.xml", "Cargo.toml"} << "Rust build";
        QTest::newRow("target alone") << QByteArray("target") << QByteArrayList{} << none;
        QTest::newRow("project file that is a folder")
            << QByteArray("target") << QByteArrayList{"dir:Cargo.toml"} << "Rust build";
        QTest::newRow("build with build.gradle")
            << QByteArray("build") << QByteArrayList{"build.gradle"} << "Gradle build";
        QTest::newRow("build with build.gradle.kts")
            << QByteArray("build") << QByteArrayList{"build.gradle.kts"} << "Gradle build";
        QTest::newRow("build alone") << QByteArray("build") << QByteArrayList{"CMakeLists.txt"} << none;
        QTest::newRow("Build capitalised") << QByteArray("Build") << QByteArrayList{"build.gradle"} << none;
        QTest::newRow(".venv with pyvenv.cfg")
            << QByteArray(".venv") << QByteArrayList{"in:pyvenv.cfg"} << "Python virtualenv";
        QTest::newRow("venv alone") << QByteArray("venv") << QByteArrayList{} << none;
        QTest::newRow("pyvenv.cfg beside venv") << QByteArray("venv") << QByteArrayList{"pyvenv.cfg"} << none;
        QTest::newRow(".next") << QByteArray(".next") << QByteArrayList{} << "Next.js build";
        QTest::newRow("Node_modules") << QByteArray("Node_modules") << QByteArrayList{} << none;
        QTest::newRow("node_modules2") << QByteArray("node_modules2") << QByteArrayList{} << none;
        QTest::newRow("ordinary name") << QByteArray("src") << QByteArrayList{"Cargo.toml"} << none;
    }

    void match()
    {
        QFETCH(QByteArray, folder);
        QFETCH(QByteArrayList, files);
        QFETCH(QString, kind);

        QTemporaryDir tmp;
        const QByteArray dir = QFile::encodeName(tmp.path()) + "/project/" + folder;
        Fixtures::folder(dir);
        const QByteArray parent = dir.left(dir.lastIndexOf('/'));
        for (const QByteArray &entry : files) {
            if (entry.startsWith("dir:"))
                Fixtures::folder(parent + '/' + entry.mid(4));
            else if (entry.startsWith("in:"))
                Fixtures::file(dir + '/' + entry.mid(3));
            else
                Fixtures::file(parent + '/' + entry);
        }
        const QByteArray name = dir.mid(dir.lastIndexOf('/') + 1);
        const int parentFd = ::open(parent.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        QVERIFY(parentFd >= 0);
        const QString found = DevArtifactRule::match(name, parentFd);
        ::close(parentFd);
        QCOMPARE(found, kind);
        QCOMPARE(found.isNull(), kind.isNull());
    }
};

SORVEL_TEST(TestDevArtifactRule);
#include "tst_devartifactrule.moc"
