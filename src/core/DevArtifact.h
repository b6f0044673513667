// A folder a scan recognised as rebuildable developer output, with its size.
// A value, compared and hashed over all its fields; any thread.

#pragma once

#include <QByteArray>
#include <QHashFunctions>
#include <QString>

struct DevArtifact {
    QByteArray path;
    QString kind; // label of the matching rule
    qint64 size = 0;
    qint64 fileCount = 0;
    friend bool operator==(const DevArtifact &, const DevArtifact &) = default;
};

inline size_t qHash(const DevArtifact &a, size_t seed = 0)
{
    return qHashMulti(seed, a.path, a.kind, a.size, a.fileCount);
}
