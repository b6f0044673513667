#include "TestMain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Outcome {
    int status = -1;
    QByteArray out;
    QByteArray err;
    QByteArray all() const { return out + err; }
};

Outcome run(const QString &program, const QStringList &arguments, const QString &workingDirectory = {},
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    if (!workingDirectory.isEmpty())
        process.setWorkingDirectory(workingDirectory);
    process.start(program, arguments);
    Outcome outcome;
    if (!process.waitForFinished(500000)) {
        process.kill();
        process.waitForFinished();
        outcome.err = "did not finish: " + program.toUtf8();
        return outcome;
    }
    outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    return outcome;
}

// The width and height a PNG file's header gives.
QSize pngSize(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = file.read(24);
    if (head.size() < 24 || !head.startsWith("\x89PNG"))
        return {};
    const auto number = [&head](int at) {
        return int((uchar(head[at]) << 24) | (uchar(head[at + 1]) << 16) | (uchar(head[at + 2]) << 8) |
                   uchar(head[at + 3]));
    };
    return {number(16), number(20)};
}

void writeFile(const QByteArray &path, qsizetype size)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    QVERIFY2(fd >= 0, path.constData());
    const QByteArray bytes(size, 'x');
    QCOMPARE(::write(fd, bytes.constData(), size_t(bytes.size())), ssize_t(bytes.size()));
    ::close(fd);
}

const QString appId = QStringLiteral(SORVEL_APP_ID);

} // namespace

class TestInstall : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefix;

    QString installed(const QString &relative) const { return m_prefix.filePath(relative); }

    QProcessEnvironment offscreen() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        return environment;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_prefix.isValid());
        const Outcome install =
            run(QStringLiteral(SORVEL_CMAKE), {QStringLiteral("--install"), QStringLiteral(SORVEL_BUILD_DIR),
                                               QStringLiteral("--prefix"), m_prefix.path(), QStringLiteral("--strip")});
        QVERIFY2(install.status == 0, install.all().constData());
    }

    void installsWhatTheDesktopReads()
    {
        QStringList expected = {
            QStringLiteral("bin/sorvel"),
            QStringLiteral("bin/sorvel-cleaner"),
            QStringLiteral("share/applications/%1.desktop").arg(appId),
            QStringLiteral("share/metainfo/%1.metainfo.xml").arg(appId),
            QStringLiteral("share/icons/hicolor/scalable/apps/%1.svg").arg(appId),
            QStringLiteral("share/icons/hicolor/symbolic/apps/%1-symbolic.svg").arg(appId),
            QStringLiteral("share/doc/sorvel-cleaner/copyright"),
        };
        for (const char *program : {"sorvel", "sorvel-cleaner"})
            expected << QStringLiteral("share/man/man1/%1.1.gz").arg(QLatin1String(program))
                     << QStringLiteral("share/bash-completion/completions/%1").arg(QLatin1String(program))
                     << QStringLiteral("share/zsh/vendor-completions/_%1").arg(QLatin1String(program))
                     << QStringLiteral("share/fish/vendor_completions.d/%1.fish").arg(QLatin1String(program));
        for (const QString &file : std::as_const(expected))
            QVERIFY2(QFileInfo::exists(installed(file)), qPrintable(file));
        for (const int size : {16, 24, 32, 48, 64, 128, 256, 512}) {
            const QString png = installed(QStringLiteral("share/icons/hicolor/%1x%1/apps/%2.png").arg(size).arg(appId));
            QCOMPARE(pngSize(png), QSize(size, size));
        }

        // Nothing installed names the folders it was built from, and the
        // programs carry no run path into them.
        QDirIterator files(m_prefix.path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            QVERIFY2(!bytes.contains(SORVEL_BUILD_DIR), qPrintable(file.fileName()));
            QVERIFY2(!bytes.contains(SORVEL_SOURCE_DIR), qPrintable(file.fileName()));
            QVERIFY2(!bytes.contains("$ORIGIN"), qPrintable(file.fileName()));
        }
    }

    void validatorsAcceptTheEntryAndTheMetadata()
    {
        const QString desktopValidate = QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
        const QString appstream = QStandardPaths::findExecutable(QStringLiteral("appstreamcli"));
        if (desktopValidate.isEmpty() || appstream.isEmpty())
            QSKIP("desktop-file-validate or appstreamcli is missing (scripts/install-deps installs both)");
        // Hints are advice; anything stronger fails.
        const Outcome entry =
            run(desktopValidate, {installed(QStringLiteral("share/applications/%1.desktop").arg(appId))});
        QVERIFY2(entry.status == 0 && !entry.all().contains("error") && !entry.all().contains("warning"),
                 entry.all().constData());
        const Outcome metadata =
            run(appstream, {QStringLiteral("validate"), QStringLiteral("--no-net"), QStringLiteral("--explain"),
                            installed(QStringLiteral("share/metainfo/%1.metainfo.xml").arg(appId))});
        QVERIFY2(metadata.status == 0, metadata.all().constData());
    }

    void installedProgramsRun()
    {
        const Outcome version = run(installed(QStringLiteral("bin/sorvel")), {QStringLiteral("--version")});
        QCOMPARE(version.status, 0);
        QVERIFY2(version.out.contains(SORVEL_VERSION), version.out.constData());

        QTemporaryDir tree;
        writeFile(QFile::encodeName(tree.filePath(QStringLiteral("one"))), 70000);
        const Outcome scan = run(installed(QStringLiteral("bin/sorvel")), {QStringLiteral("scan"), tree.path()});
        QVERIFY2(scan.status == 0, scan.all().constData());

        // The window on its demo disk, for a few seconds, from the prefix alone.
        QProcess app;
        app.setProcessEnvironment(offscreen());
        app.start(installed(QStringLiteral("bin/sorvel-cleaner")), {QStringLiteral("-demo")});
        QVERIFY(app.waitForStarted());
        QByteArray log;
        QTRY_VERIFY2_WITH_TIMEOUT((log += app.readAllStandardError()).contains("Holding the demo result"),
                                  log.constData(), 20000);
        QTest::qWait(3000);
        QCOMPARE(app.state(), QProcess::Running);
        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        log += app.readAllStandardError();
        QVERIFY2(!log.contains("qrc:/") && !log.contains("module \"") && !log.contains("is not installed"),
                 log.constData());
    }

    void secondStartHandsItsArgumentsOver()
    {
        const QString busDaemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (busDaemon.isEmpty())
            QSKIP("dbus-daemon is missing (scripts/install-deps installs it)");
        // A session bus of the test's own.
        QProcess bus;
        bus.start(busDaemon,
                  {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
        QVERIFY(bus.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(bus.canReadLine(), 10000);
        const QString address = QString::fromUtf8(bus.readLine().trimmed());
        QProcessEnvironment environment = offscreen();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
        QDBusConnection watch = QDBusConnection::connectToBus(address, QStringLiteral("install-test"));
        QVERIFY(watch.isConnected());

        // A folder whose name is not text, with "%41" in it that must not turn
        // into "A" on the way.
        QTemporaryDir parent;
        const QByteArray name = QByteArray("a b%41\xff");
        const QByteArray folder = QFile::encodeName(parent.path()) + '/' + name;
        QCOMPARE(::mkdir(folder.constData(), 0755), 0);
        for (const char *file : {"/x", "/y", "/z"})
            writeFile(folder + file, 9000);

        QProcess first;
        first.setProcessEnvironment(environment);
        first.start(installed(QStringLiteral("bin/sorvel-cleaner")), {});
        QVERIFY(first.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(watch.interface()->isServiceRegistered(appId).value(), 20000);

        // The second start, from the folder's parent with a relative path,
        // given byte for byte by the shell.
        QProcess second;
        second.setProcessEnvironment(environment);
        second.setWorkingDirectory(parent.path());
        second.start(QStringLiteral("/bin/sh"),
                     {QStringLiteral("-c"), QStringLiteral("exec \"$0\" -scan \"$(printf 'a b%%41\\377')\""),
                      installed(QStringLiteral("bin/sorvel-cleaner"))});
        QVERIFY(second.waitForFinished(30000));
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QVERIFY2(second.exitCode() == 0, second.readAllStandardError().constData());

        QByteArray log;
        QTRY_VERIFY2_WITH_TIMEOUT((log += first.readAllStandardError()).contains("Holding the scan of"),
                                  log.constData(), 20000);
        QVERIFY2(log.contains("a b%41") && log.contains("- 3 files"), log.constData());
        // Qt cannot name the folder to remove it; the test can.
        for (const char *file : {"/x", "/y", "/z"})
            ::unlink((folder + file).constData());
        ::rmdir(folder.constData());

        // A start without arguments only brings the window forward; still one
        // process holds the name.
        const Outcome third = run(installed(QStringLiteral("bin/sorvel-cleaner")), {}, {}, environment);
        QCOMPARE(third.status, 0);
        QCOMPARE(first.state(), QProcess::Running);

        first.terminate();
        QVERIFY(first.waitForFinished(10000));
        QDBusConnection::disconnectFromBus(QStringLiteral("install-test"));
        bus.terminate();
        bus.waitForFinished(5000);
    }

    void debianPackageInstallsAndRemovesCleanly()
    {
        const QString dpkg = QStandardPaths::findExecutable(QStringLiteral("dpkg"));
        const QString shlibdeps = QStandardPaths::findExecutable(QStringLiteral("dpkg-shlibdeps"));
        if (dpkg.isEmpty() || shlibdeps.isEmpty())
            QSKIP("dpkg or dpkg-shlibdeps is missing (scripts/install-deps installs dpkg-dev)");
        QTemporaryDir work;
        const Outcome pack =
            run(QStringLiteral(SORVEL_CPACK),
                {QStringLiteral("-G"), QStringLiteral("DEB"), QStringLiteral("--config"),
                 QStringLiteral(SORVEL_BUILD_DIR "/CPackConfig.cmake"), QStringLiteral("-B"), work.path()});
        QVERIFY2(pack.status == 0, pack.all().constData());
        const QStringList debs = QDir(work.path()).entryList({QStringLiteral("*.deb")}, QDir::Files);
        QCOMPARE(debs.size(), 1);
        const QString deb = work.filePath(debs.first());

        const Outcome fields = run(QStringLiteral("dpkg-deb"), {QStringLiteral("--field"), deb,
                                                                QStringLiteral("Package"), QStringLiteral("Depends")});
        QVERIFY2(fields.out.contains("Package: sorvel-cleaner"), fields.out.constData());
        QVERIFY2(fields.out.contains("libqt6core6") && fields.out.contains("qml6-module-qtquick-controls"),
                 fields.out.constData());

        // A throwaway root with an empty package database; the Qt packages are
        // not in it, so their absence is forced past.
        const QString root = work.filePath(QStringLiteral("root"));
        for (const char *dir : {"var/lib/dpkg/info", "var/lib/dpkg/updates", "var/log"})
            QVERIFY(QDir().mkpath(root + u'/' + QLatin1String(dir)));
        QFile status(root + QStringLiteral("/var/lib/dpkg/status"));
        QVERIFY(status.open(QIODevice::WriteOnly));
        status.close();
        const QStringList inRoot = {QStringLiteral("--root=") + root, QStringLiteral("--force-not-root"),
                                    QStringLiteral("--log=") + root + QStringLiteral("/var/log/dpkg.log")};
        const Outcome install =
            run(dpkg, inRoot + QStringList{QStringLiteral("--force-depends"), QStringLiteral("-i"), deb});
        QVERIFY2(install.status == 0, install.all().constData());
        for (const QString &file : {QStringLiteral("/usr/bin/sorvel-cleaner"), QStringLiteral("/usr/bin/sorvel"),
                                    QStringLiteral("/usr/share/applications/%1.desktop").arg(appId),
                                    QStringLiteral("/usr/share/metainfo/%1.metainfo.xml").arg(appId)})
            QVERIFY2(QFileInfo::exists(root + file), qPrintable(file));

        const Outcome purge =
            run(dpkg, inRoot + QStringList{QStringLiteral("--purge"), QStringLiteral("sorvel-cleaner")});
        QVERIFY2(purge.status == 0, purge.all().constData());
        QDirIterator left(root + QStringLiteral("/usr"), QDir::Files | QDir::System, QDirIterator::Subdirectories);
        QVERIFY2(!left.hasNext(), left.hasNext() ? qPrintable(left.next()) : "");
    }
};

SORVEL_TEST(TestInstall);
#include "tst_install.moc"
