#include "DuplicateFiles.h"
#include "TestMain.h"

#include "duplicates/StorageProbe.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

class TestStorageProbe : public QObject
{
    Q_OBJECT

private slots:
    void cachedFilesAreSeekFree()
    {
        DuplicateFiles dir;
        const FileItem a = dir.write("a", DuplicateFiles::noise(3 << 20, 1));
        const FileItem b = dir.write("b", DuplicateFiles::noise(3 << 20, 2));
        QVERIFY(StorageProbe::allSeekFree({a.path, b.path, dir.path() + "/gone"}));
        QVERIFY(StorageProbe::allSeekFree({}));
    }

#ifdef Q_OS_LINUX
    // Pages dropped from the cache must come from the disk: on a rotating one
    // that rules out reading several files at once.
    void evictedFilesOnRotatingDisk()
    {
        DuplicateFiles dir;
        const FileItem a = dir.write("a", DuplicateFiles::noise(8 << 20, 1));
        const FileItem b = dir.write("b", DuplicateFiles::noise(8 << 20, 2));
        struct stat st {};
        QCOMPARE(::stat(a.path.constData(), &st), 0);
        QFile queue(
            QStringLiteral("/sys/dev/block/%1:%2/queue/rotational").arg(major(st.st_dev)).arg(minor(st.st_dev)));
        QFile parentQueue(
            QStringLiteral("/sys/dev/block/%1:%2/../queue/rotational").arg(major(st.st_dev)).arg(minor(st.st_dev)));
        QByteArray rotational;
        if (queue.open(QIODevice::ReadOnly))
            rotational = queue.readAll().trimmed();
        else if (parentQueue.open(QIODevice::ReadOnly))
            rotational = parentQueue.readAll().trimmed();
        if (rotational != "1")
            QSKIP("the temporary folder is not on a rotating disk");

        for (const FileItem &file : {a, b}) {
            const int fd = ::open(file.path.constData(), O_RDONLY);
            QVERIFY(fd >= 0);
            ::fdatasync(fd);
            ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
            ::close(fd);
        }
        QVERIFY(!StorageProbe::allSeekFree({a.path, b.path}));
    }
#endif
};

SORVEL_TEST(TestStorageProbe);
#include "tst_storageprobe.moc"
