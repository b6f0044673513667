#pragma once

#include "core/FileItem.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

// Real files in a temporary folder, each returned as the FileItem a scan would
// list for it.
class DuplicateFiles
{
public:
    // `size` bytes of noise, the same for the same seed.
    static QByteArray noise(qint64 size, quint32 seed)
    {
        QByteArray bytes(size + 3, Qt::Uninitialized);
        QRandomGenerator generator(seed);
        generator.fillRange(reinterpret_cast<quint32 *>(bytes.data()), bytes.size() / 4);
        bytes.truncate(size);
        return bytes;
    }

    // `content` with the byte at `offset` changed.
    static QByteArray flipped(QByteArray content, qint64 offset)
    {
        content[offset] = char(content[offset] ^ 0x5a);
        return content;
    }

    static QString sha256(const QByteArray &content)
    {
        return QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
    }

    FileItem write(const QByteArray &name, const QByteArray &content, double modified = 1.7e9)
    {
        FileItem item;
        item.id = m_nextId++;
        item.name = name;
        item.path = QFile::encodeName(m_dir.path()) + '/' + name;
        QFile file(QFile::decodeName(item.path));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write a test file");
        file.close();
        struct stat st {};
        ::stat(item.path.constData(), &st);
        item.size = qint64(st.st_blocks) * 512;
        item.logicalSize = content.size();
        item.modified = modified;
        return item;
    }

    // A file of `length` bytes that holds `pieces` (offset and bytes) and holes
    // elsewhere.
    FileItem writeSparse(const QByteArray &name, qint64 length, const QList<QPair<qint64, QByteArray>> &pieces)
    {
        FileItem item = write(name, {});
        QFile file(QFile::decodeName(item.path));
        if (!file.open(QIODevice::WriteOnly) || !file.resize(length))
            qFatal("cannot write a sparse test file");
        for (const auto &[offset, bytes] : pieces) {
            if (!file.seek(offset) || file.write(bytes) != bytes.size())
                qFatal("cannot write a sparse test file");
        }
        file.close();
        struct stat st {};
        ::stat(item.path.constData(), &st);
        item.size = qint64(st.st_blocks) * 512;
        item.logicalSize = length;
        return item;
    }

    QByteArray path() const { return QFile::encodeName(m_dir.path()); }

private:
    QTemporaryDir m_dir;
    qint64 m_nextId = 1;
};
