// The list model of the Biggest and Forgotten shelves, the object their QML
// talks to: the shelf's search, sort and filters, the derived list, its paging
// and its texts. Lives on the main thread and follows AppState; the list of a
// big scan is derived on a worker.

#pragma once

#include "FileSort.h"
#include "ShelfPaging.h"

#include "core/CancelToken.h"
#include "core/Connections.h"
#include "core/FileItem.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QVariantList>
#include <QVariantMap>

#include <vector>

class AppState;
Q_MOC_INCLUDE("state/AppState.h")

// Each change of an input (the scan, its revision, the search, the sort, a
// filter) derives the list afresh on a worker under a new token; a late result
// of an older token is dropped. Rows exist for the shown part only: 48, then 48
// more per press of "Show more".
class FileShelfModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged)
    // "largest" (Biggest) or "old" (Forgotten).
    Q_PROPERTY(QString shelf READ shelf WRITE setShelf NOTIFY inputsChanged)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY inputsChanged)
    Q_PROPERTY(QString sort READ sortText WRITE setSortText NOTIFY inputsChanged)
    Q_PROPERTY(bool hidePackages READ hidePackages WRITE setHidePackages NOTIFY inputsChanged)
    Q_PROPERTY(int months READ months WRITE setMonths NOTIFY inputsChanged)
    // [{raw, title, hue, on}]: "All kinds" (raw ""), then the ten categories.
    Q_PROPERTY(QVariantList chips READ chips NOTIFY inputsChanged)
    Q_PROPERTY(QVariantList sorts READ sorts CONSTANT)               // [{raw, title}]
    Q_PROPERTY(QVariantList monthChoices READ monthChoices CONSTANT) // [{months, label}]
    Q_PROPERTY(bool deriving READ deriving NOTIFY listChanged)
    Q_PROPERTY(int count READ count NOTIFY listChanged)
    Q_PROPERTY(int shown READ shown NOTIFY listChanged)
    Q_PROPERTY(QString moreText READ moreText NOTIFY listChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY listChanged)
    Q_PROPERTY(QString shelfTitle READ shelfTitle NOTIFY listChanged)
    Q_PROPERTY(QString shelfDetail READ shelfDetail NOTIFY listChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY listChanged)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY inputsChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY inputsChanged)

public:
    enum Role {
        ItemRole = Qt::UserRole + 1, // the drag form of the row's item
        LineRole,                    // the second line
        WeightRole,                  // size over the heaviest shown
        PathRole,
    };

    explicit FileShelfModel(QObject *parent = nullptr);
    ~FileShelfModel() override;

    AppState *state() const { return m_state; }
    void setState(AppState *state);
    QString shelf() const;
    void setShelf(const QString &shelf);
    QString search() const { return m_search; }
    void setSearch(const QString &search);
    FileSort sort() const { return m_sort; }
    QString sortText() const { return m_sort.rawValue(); }
    void setSort(FileSort sort);
    void setSortText(const QString &raw);
    bool hidePackages() const { return m_hidePackages; }
    void setHidePackages(bool hide);
    int months() const { return m_months; }
    void setMonths(int months);
    // Overrides the clock of the Forgotten shelf (seconds since the epoch); 0
    // goes back to the real one.
    void setNow(double now);

    QVariantList chips() const;
    static QVariantList sorts();
    static QVariantList monthChoices();
    bool deriving() const { return bool(m_token); }
    int count() const { return int(m_list.size()); }
    int shown() const { return m_paging.shown(); }
    QString moreText() const { return m_paging.moreText(qsizetype(m_list.size())); }
    QString subtitle() const;
    QString shelfTitle() const;
    QString shelfDetail() const;
    bool isEmpty() const { return !deriving() && m_list.empty(); }
    QString emptyTitle() const;
    QString emptyText() const;
    // The whole derived list, shown or not.
    const std::vector<FileItem> &list() const { return m_list; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // 48 more rows, or what remains.
    Q_INVOKABLE void showMore();
    // A chip: "" for all kinds, else a category's raw value. The chip that is on
    // clears the filter.
    Q_INVOKABLE void chooseCategory(const QString &raw);
    // What the preview window shows for the file of a row.
    Q_INVOKABLE QVariantMap previewDetails(int row) const;

Q_SIGNALS:
    void stateChanged();
    void inputsChanged();
    void listChanged();

private:
    bool isForgotten() const { return m_forgotten; }
    double now() const;
    // Inputs changed: derive again; `resetPaging` brings the shown count back to 48.
    void refresh(bool resetPaging);
    void accept(const CancelTokenPtr &token, std::vector<FileItem> list);
    void setList(std::vector<FileItem> list);
    // The largest size among the shown rows, which every row's weight is over.
    void updateHeaviest();

    QPointer<AppState> m_state;
    bool m_forgotten = false;
    QString m_search;
    FileSort m_sort = FileSort::size;
    bool m_hidePackages = false;
    int m_months = 12;
    double m_now = 0;
    ShelfPaging m_paging;
    std::vector<FileItem> m_list;
    int m_rows = 0; // the shown part of m_list, as the view holds it
    qint64 m_heaviest = 0;
    qint64 m_listBytes = 0;
    CancelTokenPtr m_token;
    Connections m_connections;
};
