#include "CleanupModel.h"

#include "core/Paths.h"
#include "core/Xdg.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QThreadPool>

#include <algorithm>

#include <sys/stat.h>

namespace {

// Runs `work` on the shared pool and hands its value to `done` on the main
// thread, unless `receiver` is gone by then.
template <typename Work, typename Done>
void runInBackground(QObject *receiver, QThread::Priority priority, Work work, Done done)
{
    QPointer<QObject> guard(receiver);
    QThreadPool::globalInstance()->start([guard, priority, work = std::move(work), done = std::move(done)]() mutable {
        QThread::currentThread()->setPriority(priority);
        auto value = work();
        QThread::currentThread()->setPriority(QThread::NormalPriority);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, value = std::move(value), done = std::move(done)]() mutable {
                if (guard)
                    done(std::move(value));
            },
            Qt::QueuedConnection);
    });
}

bool isDirectory(const QByteArray &path)
{
    struct stat st {};
    return ::stat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

} // namespace

CleanupModel::CleanupModel(QObject *parent) : CleanupModel(Platform::current(), Platform::homeDirectory(), parent) {}

CleanupModel::CleanupModel(Platform platform, const QByteArray &home, QObject *parent)
    : QObject(parent), m_locations(JunkLocation::all(platform, home))
{
    if (platform == Platform::macOS) {
        m_trashPath = home + "/.Trash";
        // Settled once: a simulators folder made later is not noticed.
        m_hasSimulators = isDirectory(home + "/Library/Developer/CoreSimulator/Devices");
    } else {
        m_trashPath = Xdg::dataHome(home) + "/Trash";
    }
}

void CleanupModel::setSelected(const QSet<QString> &selected)
{
    if (m_selected == selected)
        return;
    m_selected = selected;
    emit selectedChanged();
}

void CleanupModel::setMeasuring(bool on)
{
    if (m_isMeasuring == on)
        return;
    m_isMeasuring = on;
    emit isMeasuringChanged();
}

void CleanupModel::measure()
{
    if (m_demo)
        return;
    if (m_isMeasuring) {
        m_remeasure = true;
        return;
    }
    setMeasuring(true);
    // Locations one after the other, then the Trash, at low priority.
    runInBackground(
        this, QThread::LowPriority,
        [locations = m_locations, trashPath = m_trashPath, trashFolders = m_trashFolders] {
            Measurement m;
            for (const JunkLocation &location : locations)
                m.measurements.insert(location.id, location.measure());
            // The Trash is every trash folder of the user, read only if all are.
            const QByteArrayList folders = trashFolders ? trashFolders() : QByteArrayList{trashPath};
            m.trash.readable = true;
            for (const QByteArray &folder : folders) {
                const DiskUsage usage = DiskScanner::usage(folder);
                m.trash.size += usage.size;
                m.trash.items += usage.items;
                m.trash.exists = m.trash.exists || usage.exists;
                m.trash.readable = m.trash.readable && (usage.readable || !usage.exists);
            }
            return m;
        },
        [this](const Measurement &m) { apply(m); });
}

void CleanupModel::apply(const Measurement &result)
{
    m_measurements = result.measurements;
    emit measurementsChanged();
    m_trash = result.trash;
    emit trashChanged();
    // Every listing is stale now.
    if (!m_contents.isEmpty()) {
        m_contents.clear();
        emit contentsChanged();
    }
    setMeasuring(false);

    if (!m_hasMeasured) {
        // The first result ticks the safe locations that hold something; later
        // results leave the user's ticks alone.
        QSet<QString> ticked;
        for (const JunkLocation &location : m_locations) {
            const auto it = m_measurements.constFind(location.id);
            if (location.risk == JunkLocation::Risk::safe && it != m_measurements.cend() && it->size > 0)
                ticked.insert(location.id);
        }
        setSelected(ticked);
        m_hasMeasured = true;
        emit hasMeasuredChanged();
    }
    emit measured();

    if (m_remeasure) {
        m_remeasure = false;
        measure();
    }
}

QList<JunkLocation> CleanupModel::visibleLocations() const
{
    QList<JunkLocation> out;
    for (const JunkLocation &location : m_locations) {
        const auto it = m_measurements.constFind(location.id);
        if (it != m_measurements.cend()) {
            if (JunkLocation::isWorthShowing(*it))
                out << location;
        } else if (!location.existingPaths().isEmpty()) {
            out << location;
        }
    }
    return out;
}

void CleanupModel::subtract(const QHash<QByteArray, qint64> &removed)
{
    bool measurementsTouched = false;
    bool contentsTouched = false;
    for (const JunkLocation &location : m_locations) {
        const auto it = m_measurements.find(location.id);
        if (it == m_measurements.end())
            continue;
        qint64 sum = 0;
        for (auto r = removed.cbegin(); r != removed.cend(); ++r) {
            const bool inside = std::any_of(location.paths.cbegin(), location.paths.cend(),
                                            [&](const QByteArray &p) { return Paths::isWithin(r.key(), p); });
            if (inside)
                sum += r.value();
        }
        if (sum < 1)
            continue;
        it->size = std::max<qint64>(0, it->size - sum);
        measurementsTouched = true;
        const auto listing = m_contents.find(location.id);
        if (listing != m_contents.end()) {
            const qsizetype dropped =
                listing->removeIf([&](const JunkEntry &entry) { return removed.contains(entry.path); });
            contentsTouched = contentsTouched || dropped > 0;
        }
    }
    if (measurementsTouched)
        emit measurementsChanged();
    if (contentsTouched)
        emit contentsChanged();
}

void CleanupModel::loadContents(bool force, const JunkLocation &location)
{
    const QString id = location.id;
    if (m_demo) {
        m_contents.insert(id, m_contents.value(id));
        emit contentsChanged();
        return;
    }
    if (!force && m_contents.contains(id))
        return;
    if (m_loadingContents.contains(id))
        return;
    m_loadingContents.insert(id);
    emit loadingContentsChanged();
    runInBackground(
        this, QThread::NormalPriority, [location] { return location.entries(); },
        [this, id](const QList<JunkEntry> &entries) {
            m_contents.insert(id, entries);
            emit contentsChanged();
            m_loadingContents.remove(id);
            emit loadingContentsChanged();
        });
}

void CleanupModel::loadDemo(const QHash<QString, DiskUsage> &measurements,
                            const QHash<QString, QList<JunkEntry>> &contents)
{
    m_demo = true;
    m_measurements = measurements;
    emit measurementsChanged();
    m_trash = DiskUsage{2300000000, 412, true, true};
    emit trashChanged();
    m_contents = contents;
    emit contentsChanged();
    if (!m_hasMeasured) {
        m_hasMeasured = true;
        emit hasMeasuredChanged();
    }
    setSelected({});
}
