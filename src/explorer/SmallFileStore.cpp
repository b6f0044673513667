#include "SmallFileStore.h"

#include "core/FileItem.h"
#include "core/Prefs.h"
#include "scan/LooseFiles.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

SmallFileStore::SmallFileStore(std::function<std::optional<int>()> revision, QObject *parent)
    : QObject(parent), m_revision(std::move(revision))
{}

QList<ExplorerEntry> SmallFileStore::of(const DirNodePtr &node) const
{
    return node ? m_files.value(node->path()) : QList<ExplorerEntry>{};
}

bool SmallFileStore::load(const DirNodePtr &node)
{
    const std::optional<int> revision = m_revision();
    if (!node || !revision)
        return false;
    const QByteArray path = node->path();
    if (m_files.contains(path) || m_loading.contains(path))
        return false;
    m_loading.insert(path);

    QSet<QByteArray> known;
    for (const DirNodePtr &child : node->children)
        known.insert(child->name);
    for (const FileItem &file : node->files)
        known.insert(file.name);
    const bool skipHidden = Prefs::boolean(Prefs::skipHiddenFiles);
    QPointer<SmallFileStore> self(this);
    QThreadPool::globalInstance()->start([self, path, known, skipHidden, revision = *revision] {
        const QList<LooseFiles::File> found = LooseFiles::list(path, known, skipHidden);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, path, found, revision] {
                if (!self)
                    return;
                self->m_loading.remove(path);
                // A removal in the meantime made the listing stale.
                if (self->m_revision() == revision) {
                    QList<ExplorerEntry> entries;
                    entries.reserve(found.size());
                    for (const LooseFiles::File &f : found)
                        entries.append(ExplorerEntry::smallFile(f.path, f.size));
                    self->m_files.insert(path, entries);
                }
                emit self->listed(path);
            },
            Qt::QueuedConnection);
    });
    return true;
}
