// The state behind Deep Clean: the catalogue, what each location measured, the
// Trash's size, the ticked locations and the lazily loaded listing of one. Lives
// on the main thread; measuring and listing run on workers that get value copies
// of the locations and hand their answers back by queued call.

#pragma once

#include "JunkLocation.h"

#include <QByteArrayList>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

// A measurement cannot be cancelled; asking again while one runs queues exactly
// one more run.
class CleanupModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isMeasuring READ isMeasuring NOTIFY isMeasuringChanged)
    Q_PROPERTY(bool hasMeasured READ hasMeasured NOTIFY hasMeasuredChanged)
    Q_PROPERTY(bool hasSimulators READ hasSimulators CONSTANT)

public:
    explicit CleanupModel(QObject *parent = nullptr);
    // For tests and other profiles: a catalogue below another home.
    CleanupModel(Platform platform, const QByteArray &home, QObject *parent = nullptr);

    const QList<JunkLocation> &locations() const { return m_locations; }
    const QHash<QString, DiskUsage> &measurements() const { return m_measurements; }
    std::optional<DiskUsage> trash() const { return m_trash; }
    const QSet<QString> &selected() const { return m_selected; }
    bool isMeasuring() const { return m_isMeasuring; }
    bool hasMeasured() const { return m_hasMeasured; }
    bool hasSimulators() const { return m_hasSimulators; }
    const QHash<QString, QList<JunkEntry>> &contents() const { return m_contents; }
    const QSet<QString> &loadingContents() const { return m_loadingContents; }
    // The folder whose size is reported as the Trash.
    QByteArray trashPath() const { return m_trashPath; }

    void setSelected(const QSet<QString> &selected);
    // The folders measured as the Trash, listed on the measuring worker; the
    // home trash alone while none is set.
    void setTrashFolders(std::function<QByteArrayList()> folders) { m_trashFolders = std::move(folders); }

    // Measures every location and the Trash, or queues one more run.
    void measure();
    // Locations worth showing, in catalogue order.
    QList<JunkLocation> visibleLocations() const;
    // Corrects measurements and listings after a removal (path -> bytes freed).
    void subtract(const QHash<QByteArray, qint64> &removed);
    // Loads the listing of one location, unless loaded (and not forced) or
    // already loading.
    void loadContents(bool force, const JunkLocation &location);
    // Fills the model with made-up figures and the caches' listing, and stops
    // measuring and loading for real: the demo shows them and touches nothing.
    void loadDemo(const QHash<QString, DiskUsage> &measurements, const QHash<QString, QList<JunkEntry>> &contents);
    // When on, measuring and loading leave the (demo) data alone.
    void setDemoMode(bool on) { m_demo = on; }

signals:
    void measurementsChanged();
    void trashChanged();
    void selectedChanged();
    void isMeasuringChanged();
    void hasMeasuredChanged();
    void contentsChanged();
    void loadingContentsChanged();
    // After each finished measurement, once the fields above are updated.
    void measured();

private:
    struct Measurement {
        QHash<QString, DiskUsage> measurements;
        DiskUsage trash;
    };
    void apply(const Measurement &result);
    void setMeasuring(bool on);

    QList<JunkLocation> m_locations;
    QByteArray m_trashPath;
    std::function<QByteArrayList()> m_trashFolders;
    QHash<QString, DiskUsage> m_measurements;
    std::optional<DiskUsage> m_trash;
    QSet<QString> m_selected;
    bool m_isMeasuring = false;
    bool m_hasMeasured = false;
    bool m_hasSimulators = false;
    bool m_remeasure = false;
    bool m_demo = false;
    QHash<QString, QList<JunkEntry>> m_contents;
    QSet<QString> m_loadingContents;
};
