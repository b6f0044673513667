// The object the Deep Clean area's QML talks to: its search, filter pill and
// sort, the shown locations and build artefacts as rows, the summary of what is
// safe, and the area's buttons. Lives on the main thread and follows AppState
// and its CleanupModel.

#pragma once

#include "DeepCleanFilter.h"
#include "NameSizeSort.h"

#include "core/Connections.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QVariantList>

class AppState;
Q_MOC_INCLUDE("state/AppState.h")

// The lists are few rows (the catalogue's locations and the scan's artefacts of
// 1 MB and more), rebuilt as plain values whenever what they show changes.
class SteamModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY inputsChanged)
    Q_PROPERTY(QString filter READ filterText WRITE setFilterText NOTIFY inputsChanged)
    Q_PROPERTY(QString sort READ sortText WRITE setSortText NOTIFY inputsChanged)
    Q_PROPERTY(QVariantList filters READ filters CONSTANT) // [{raw, title}]
    Q_PROPERTY(QVariantList sorts READ sorts CONSTANT)     // [{raw, title}]
    // [{id, item, subtitle, detail, symbol, lookFirst, canTick, weight, expanded}]
    Q_PROPERTY(QVariantList locations READ locations NOTIFY listsChanged)
    // [{item, subtitle, weight, path}]
    Q_PROPERTY(QVariantList artifacts READ artifacts NOTIFY listsChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY listsChanged)
    Q_PROPERTY(bool canSelectSafe READ canSelectSafe NOTIFY listsChanged)
    Q_PROPERTY(bool nothingMatches READ nothingMatches NOTIFY listsChanged)
    Q_PROPERTY(bool firstMeasure READ firstMeasure NOTIFY listsChanged)
    Q_PROPERTY(bool isMeasuring READ isMeasuring NOTIFY listsChanged)
    Q_PROPERTY(bool hasResult READ hasResult NOTIFY listsChanged)
    // What stands on the Trash's plate: its size, or why there is none.
    Q_PROPERTY(QString trashValue READ trashValue NOTIFY listsChanged)
    // Whether the simulators' plate shows (macOS with Xcode's simulators).
    Q_PROPERTY(bool hasSimulators READ hasSimulators NOTIFY stateChanged)

public:
    explicit SteamModel(QObject *parent = nullptr);

    AppState *state() const { return m_state; }
    // Also measures the locations if they never were: the area is being shown.
    void setState(AppState *state);
    QString search() const { return m_search; }
    void setSearch(const QString &search);
    QString filterText() const { return m_filter.rawValue(); }
    void setFilterText(const QString &raw);
    QString sortText() const { return m_sort.rawValue(); }
    void setSortText(const QString &raw);
    static QVariantList filters();
    static QVariantList sorts();

    QVariantList locations() const { return m_locations; }
    QVariantList artifacts() const { return m_artifacts; }
    QString summary() const { return m_summary; }
    bool canSelectSafe() const { return m_safeCount > 0; }
    bool nothingMatches() const;
    bool firstMeasure() const;
    bool isMeasuring() const;
    bool hasResult() const;
    QString trashValue() const;
    bool hasSimulators() const;

    Q_INVOKABLE void measureAgain();
    // Everything safe, in one addition to the selection, whatever is filtered.
    Q_INVOKABLE void selectEverythingSafe();
    // Back to all, with no search.
    Q_INVOKABLE void showEverything();
    // Folds or unfolds a location's contents.
    Q_INVOKABLE void toggleExpanded(const QString &id);
    // Shows an artefact's folder in the Space area.
    Q_INVOKABLE void openArtifact(const QString &path);
    // Asks whether to empty the Trash; yes empties it.
    Q_INVOKABLE void emptyTrash();
    // Asks whether to remove the unavailable simulators; yes removes them.
    Q_INVOKABLE void removeSimulators();

Q_SIGNALS:
    void stateChanged();
    void inputsChanged();
    void listsChanged();

private:
    void rebuild();

    QPointer<AppState> m_state;
    QString m_search;
    DeepCleanFilter m_filter = DeepCleanFilter::all;
    NameSizeSort m_sort = NameSizeSort::size;
    QSet<QString> m_expanded;
    QVariantList m_locations;
    QVariantList m_artifacts;
    QString m_summary;
    qsizetype m_safeCount = 0;
    Connections m_connections;
};
