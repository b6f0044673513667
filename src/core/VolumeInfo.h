// One mounted volume the application offers for scanning. A value, compared and
// hashed over all its fields, its identity the path of its mount point; any
// thread (listing the volumes blocks, so it runs on a worker).

#pragma once

#include <QByteArray>
#include <QHashFunctions>
#include <QList>
#include <QMetaType>
#include <QString>

struct VolumeInfo {
    Q_GADGET
    Q_PROPERTY(QString path READ pathText CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(qint64 total MEMBER total CONSTANT)
    Q_PROPERTY(qint64 available MEMBER available CONSTANT)
    Q_PROPERTY(bool isInternal MEMBER isInternal CONSTANT)
    Q_PROPERTY(bool isRoot MEMBER isRoot CONSTANT)

public:
    QByteArray url;          // the mount point, as path bytes
    QString name;            // the volume's label, else the mount point's display name
    qint64 total = 0;        // capacity in bytes
    qint64 available = 0;    // free bytes for the user
    bool isInternal = false; // false when the system does not say
    bool isRoot = false;     // the root file system

    QString pathText() const;
    QByteArray id() const { return url; }

    friend bool operator==(const VolumeInfo &, const VolumeInfo &) = default;

    // The mounted volumes, the root first, then by name. Pseudo and system file
    // systems, bind mounts of a device already listed and volumes without
    // capacity are left out. Blocking; call it on a worker.
    static QList<VolumeInfo> mounted();

    // The order of mounted(): a root volume before any other, then by name in
    // plain text order. Stable.
    static void sort(QList<VolumeInfo> &volumes);
};

inline size_t qHash(const VolumeInfo &v, size_t seed = 0)
{
    return qHashMulti(seed, v.url, v.name, v.total, v.available, v.isInternal, v.isRoot);
}

Q_DECLARE_METATYPE(VolumeInfo)
