// The list model of the Twins shelf, the object its QML talks to: the
// threshold, search and sort of the page, the duplicate groups as a flat list of
// header and file rows, the page's state and texts, and its buttons. Lives on
// the main thread and follows AppState's DuplicatesModel.

#pragma once

#include "TwinShelves.h"
#include "TwinSort.h"

#include "core/Connections.h"
#include "core/SizeThreshold.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QVariantList>
#include <QVariantMap>

#include <vector>

class AppState;
Q_MOC_INCLUDE("state/AppState.h")

// Each group is a header row followed by one row per file, in the group's own
// order. Rows are rebuilt when the groups, the search or the sort change.
class TwinShelfModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged)
    // The raw value of the threshold in bytes; takes effect at the next search.
    Q_PROPERTY(qint64 minSize READ minSize WRITE setMinSize NOTIFY inputsChanged)
    Q_PROPERTY(int thresholdIndex READ thresholdIndex NOTIFY inputsChanged)
    Q_PROPERTY(QStringList thresholdLabels READ thresholdLabels CONSTANT)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY inputsChanged)
    Q_PROPERTY(QString sort READ sortText WRITE setSortText NOTIFY inputsChanged)
    Q_PROPERTY(QVariantList sorts READ sorts CONSTANT) // [{raw, title}]
    // "running", "neverRun", "noTwins" or "list".
    Q_PROPERTY(QString content READ content NOTIFY pageChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY pageChanged)
    Q_PROPERTY(double progress READ progress NOTIFY pageChanged)
    Q_PROPERTY(QString status READ status NOTIFY pageChanged)
    Q_PROPERTY(QString noTwinsText READ noTwinsText NOTIFY pageChanged)
    Q_PROPERTY(bool canFind READ canFind NOTIFY pageChanged)
    Q_PROPERTY(bool canSelectAll READ canSelectAll NOTIFY pageChanged)
    Q_PROPERTY(int groupCount READ groupCount NOTIFY pageChanged)
    // Files the last search could not read, in words; empty when none.
    Q_PROPERTY(QString unreadableText READ unreadableText NOTIFY pageChanged)
    // On a saved scan, that the search reads this computer's files at its
    // paths; empty for a scan made here.
    Q_PROPERTY(QString savedScanText READ savedScanText NOTIFY pageChanged)
    // Whether the copies found can be selected: not from a saved scan.
    Q_PROPERTY(bool canSelect READ canSelect NOTIFY pageChanged)

public:
    enum Role {
        IsHeaderRole = Qt::UserRole + 1,
        GroupRole,    // index of the row's group among the shown groups
        TitleRole,    // header: the newest file's name
        LineRole,     // header: "3 copies · 1.2 GB extra"; file: its folder and date
        ItemRole,     // file: the drag form of its item
        IsNewestRole, // file: the copy that stays
        WeightRole,
    };

    explicit TwinShelfModel(QObject *parent = nullptr);

    AppState *state() const { return m_state; }
    void setState(AppState *state);
    qint64 minSize() const { return m_minSize.rawValue(); }
    void setMinSize(qint64 bytes);
    int thresholdIndex() const;
    static QStringList thresholdLabels();
    QString search() const { return m_search; }
    void setSearch(const QString &search);
    TwinSort sort() const { return m_sort; }
    QString sortText() const { return m_sort.rawValue(); }
    void setSortText(const QString &raw);
    static QVariantList sorts();
    QString content() const;
    QString subtitle() const;
    double progress() const;
    QString status() const;
    QString noTwinsText() const { return TwinShelves::noTwinsText(m_minSize); }
    bool canFind() const;
    bool canSelectAll() const;
    int groupCount() const { return int(m_shown.size()); }
    QString unreadableText() const;
    QString savedScanText() const;
    bool canSelect() const;
    // Overrides the clock of the dates on the rows; 0 goes back to the real one.
    void setNow(double now) { m_now = now; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // "Find Twins" and "Search Again": a search among the scan's files.
    Q_INVOKABLE void find();
    Q_INVOKABLE void stop();
    // Every extra copy of the shown groups, in one addition to the selection;
    // nothing while the copies can't be selected.
    Q_INVOKABLE void selectAllExtras();
    // The extra copies of one shown group, likewise.
    Q_INVOKABLE void selectExtras(int group);
    // What the preview window shows for the file of a row.
    Q_INVOKABLE QVariantMap previewDetails(int row) const;

Q_SIGNALS:
    void stateChanged();
    void inputsChanged();
    void pageChanged();

private:
    struct Row {
        int group;
        int file; // -1 for the header
    };
    void rebuild();
    const FileItem *fileAt(int row) const;

    QPointer<AppState> m_state;
    SizeThreshold m_minSize = SizeThreshold::mb10;
    QString m_search;
    TwinSort m_sort = TwinSort::extra;
    double m_now = 0;
    std::vector<const DuplicateGroup *> m_shown;
    std::vector<int> m_kept; // per shown group, the index of the copy that stays
    std::vector<Row> m_rows;
    Connections m_connections;
};
