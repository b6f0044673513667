#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTest>

// A file of `bytes` bytes at `path`, its folders made on the way; fails the
// running test when it can't be written.
inline void writeFile(const QByteArray &path, qsizetype bytes)
{
    QDir().mkpath(QFile::decodeName(path.left(path.lastIndexOf('/'))));
    QFile file(QFile::decodeName(path));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(QByteArray(bytes, 'x')), bytes);
}
