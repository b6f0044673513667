// The list model of the Space explorer's grid, the object its QML talks to:
// the shown tiles as rows, with the search, filter, sort, layout, paging, clicks,
// keys and hover that decide them. Lives on the main thread; follows AppState.
// Its .cpp runs past 700 lines: every property and invokable the view reaches
// lands there and forwards to SpaceNavigator, SpaceHeader, TileRoles, TileKeys,
// SmallFileStore and RowDiff.

#pragma once

#include "ExplorerEntry.h"
#include "ExplorerFilter.h"
#include "ExplorerLayout.h"
#include "ExplorerQuery.h"
#include "ExplorerSort.h"
#include "ExplorerTile.h"
#include "SmallFileStore.h"
#include "SpaceHeader.h"
#include "SpaceNavigator.h"
#include "SpaceView.h"
#include "SteamClean.h"
#include "TileList.h"
#include "TileMemo.h"
#include "TileText.h"

#include "core/Connections.h"

#include <QAbstractListModel>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <vector>

class AppState;
Q_MOC_INCLUDE("state/AppState.h")

// The rows are the first `shown` tiles of the current list, so the view never
// holds more than it draws; the whole list is built once per change of its key
// (see SpaceView::resultTiles) and not for hover, scroll or paging. Where it
// stands is the navigator's; the header texts come from SpaceHeader and are
// forwarded as properties, so QML reaches everything through this one object.
class SpaceModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(QString mode READ modeText NOTIFY modeChanged)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    Q_PROPERTY(QString filter READ filterText WRITE setFilterText NOTIFY filterChanged)
    Q_PROPERTY(QString sort READ sortText WRITE setSortText NOTIFY sortChanged)
    Q_PROPERTY(QString layout READ layoutText WRITE setLayoutText NOTIFY layoutChanged)
    Q_PROPERTY(QVariantList filters READ filters CONSTANT)
    Q_PROPERTY(QVariantList sorts READ sorts CONSTANT)
    Q_PROPERTY(int shown READ shown NOTIFY tilesChanged)
    Q_PROPERTY(int totalCount READ totalCount NOTIFY tilesChanged)
    Q_PROPERTY(QString showingText READ showingText NOTIFY tilesChanged)
    Q_PROPERTY(bool emptyVisible READ emptyVisible NOTIFY tilesChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY tilesChanged)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY tilesChanged)
    Q_PROPERTY(QString emptySymbol READ emptySymbol NOTIFY tilesChanged)
    Q_PROPERTY(bool emptyCanReset READ emptyCanReset NOTIFY tilesChanged)
    Q_PROPERTY(bool smallRowVisible READ smallRowVisible NOTIFY tilesChanged)
    Q_PROPERTY(bool smallRowLoadable READ smallRowLoadable NOTIFY tilesChanged)
    Q_PROPERTY(bool smallLoading READ smallLoading NOTIFY tilesChanged)
    Q_PROPERTY(QString smallRowText READ smallRowText NOTIFY tilesChanged)
    Q_PROPERTY(QString folderKey READ folderKey NOTIFY folderChanged)
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY folderChanged)
    Q_PROPERTY(QStringList crumbs READ crumbs NOTIFY folderChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY folderChanged)
    Q_PROPERTY(QString currentSizeText READ currentSizeText NOTIFY folderChanged)
    Q_PROPERTY(QString currentFilesText READ currentFilesText NOTIFY folderChanged)
    Q_PROPERTY(QString unreadableNotice READ unreadableNotice NOTIFY folderChanged)
    Q_PROPERTY(QVariantList unreadableFolders READ unreadableFolders NOTIFY folderChanged)
    Q_PROPERTY(QString hovered READ hoveredText NOTIFY hoveredChanged)
    Q_PROPERTY(bool gridFocused READ gridFocused WRITE setGridFocused NOTIFY gridFocusedChanged)
    // The row of the tile that has (or last had) the keyboard focus; -1 for none.
    Q_PROPERTY(int focusRow READ focusRow NOTIFY focusRowChanged)
    Q_PROPERTY(double waterLevel READ waterLevel NOTIFY selectionChanged)
    Q_PROPERTY(SteamClean *steamer READ steamer CONSTANT)
    // Set by the view from the appearance: with reduced motion what a removal
    // takes fades where it stands and the steamer stays home.
    Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY reducedMotionChanged)
    Q_PROPERTY(QString discoveringTitle READ discoveringTitle NOTIFY progressChanged)
    Q_PROPERTY(QString scanPath READ scanPath NOTIFY progressChanged)
    Q_PROPERTY(QString scanBytesText READ scanBytesText NOTIFY progressChanged)
    Q_PROPERTY(QString scanCountsText READ scanCountsText NOTIFY progressChanged)
    Q_PROPERTY(QVariantList composition READ composition NOTIFY compositionChanged)
    Q_PROPERTY(QVariantList recents READ recents NOTIFY recentsChanged)

public:
    enum Role {
        TileIdRole = Qt::UserRole + 1,
        NameRole,
        IsPlaceholderRole,
        IconPathRole, // lossless text of the path whose icon stands for the tile
        ConditionRole,
        SeedRole,
        SizeTextRole,
        KindLineRole,
        HelpRole,
        HelpSymbolsRole, // per line of help, the symbol before it or ""
        IsDirectoryRole,
        MeasuringRole,
        CanOpenRole,
        CanPreviewRole,
        IncludesRole,
        InheritedRole,
        LockedRole,
        RiskLevelRole,
        RiskTitleRole,
        RiskHelpRole,
        ArtifactKindRole,
        WeightRole,
        WaitingRole,
        BarFactorRole,
        SelectActionRole,    // "Deselect" or "Select for Cleaning"
        VanishingRole,       // being taken by a removal right now
        AccessibleNameRole,  // name, size, share of the folder and verdict
        UnreadableRole,      // a folder nothing of which could be listed
        UnreadableCountRole, // folders at or below it that couldn't be read
    };
    Q_ENUM(Role)

    static constexpr int pageSize = 120;

    explicit SpaceModel(QObject *parent = nullptr);
    ~SpaceModel() override;

    AppState *state() const;
    void setState(AppState *state);

    // Seconds on a monotonic clock; replaceable for tests.
    void setClock(std::function<double()> clock) { m_navigator.setClock(std::move(clock)); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    SpaceView::Mode mode() const { return m_mode; }
    QString modeText() const { return SpaceView::modeName(m_mode); }
    QString search() const { return m_query.search; }
    void setSearch(const QString &search);
    ExplorerFilter filter() const { return m_query.filter; }
    void setFilter(ExplorerFilter filter);
    QString filterText() const { return m_query.filter.rawValue(); }
    void setFilterText(const QString &raw);
    ExplorerSort sort() const { return m_query.sort; }
    void setSort(ExplorerSort sort);
    QString sortText() const { return m_query.sort.rawValue(); }
    void setSortText(const QString &raw);
    ExplorerLayout layout() const { return m_layout; }
    QString layoutText() const { return m_layout.rawValue(); }
    void setLayoutText(const QString &raw); // stored under "spaceLayout"
    QVariantList filters() const;
    QVariantList sorts() const;

    int shown() const { return m_shown; }
    int totalCount() const { return int(allTiles().size()); }
    QString showingText() const;
    bool emptyVisible() const;
    QString emptyText() const;
    QString emptyTitle() const;
    QString emptySymbol() const;
    // A search or filter hides something: "Show Everything" helps.
    bool emptyCanReset() const { return !m_query.search.isEmpty() || m_query.filter != ExplorerFilter::all; }
    // The row of the loose small files: to be listed, on their way, or what
    // no listing could account for (the demo's, or files gone since the scan).
    bool smallRowVisible() const;
    bool smallRowLoadable() const;
    bool smallLoading() const;
    QString smallRowText() const;

    DirNodePtr currentNode() const;
    const std::vector<DirNodePtr> &stack() const { return m_navigator.stack(); }
    QString folderKey() const;
    bool canGoBack() const { return m_navigator.canGoBack(); }
    QStringList crumbs() const { return m_header.crumbs(); }
    QString subtitle() const { return m_header.subtitle(); }
    QString currentSizeText() const { return m_header.sizeText(); }
    QString currentFilesText() const { return m_header.filesText(); }
    QString unreadableNotice() const { return m_header.unreadableNotice(); }
    QVariantList unreadableFolders() const { return m_header.unreadableFolders(); }

    QString hoveredText() const;
    bool gridFocused() const { return m_gridFocused; }
    int focusRow() const { return m_focusRow; }
    void setGridFocused(bool focused);
    double waterLevel() const;
    SteamClean *steamer() { return &m_steamer; }
    bool reducedMotion() const { return m_reducedMotion; }
    void setReducedMotion(bool reduced);
    // A removal started: the steamer visits the tiles it takes that are in
    // view, given where the view's rows lie (row height and width, columns,
    // scroll offset, viewport size). Animation only.
    Q_INVOKABLE void steamClean(double cellWidth, double cellHeight, int columns, double contentY, double width,
                                double height);
    // The grid's size changed: the steamer goes home unless it is busy.
    Q_INVOKABLE void parkSteamer(double width, double height);

    QString discoveringTitle() const { return m_header.discoveringTitle(); }
    QString scanPath() const { return m_header.scanPath(); }
    QString scanBytesText() const { return m_header.scanBytesText(); }
    QString scanCountsText() const { return m_header.scanCountsText(); }
    QVariantList composition() const { return m_header.composition(); }
    QVariantList recents() const { return m_header.recents(); }

    // The whole current list (welcome, discovering or results).
    const TileList &allTiles() const;
    const TileMemo &memo() const { return m_memo; }
    const QHash<QByteArray, QList<ExplorerEntry>> &smallFiles() const { return m_smallFiles.all(); }

    // -- Actions from the view -------------------------------------------------
    // A tap on row `row`: `modifiers` as Qt::KeyboardModifiers, `clickCount` 2
    // or more for the later clicks of a multi-click, `isMouse` false for keys.
    Q_INVOKABLE void tap(int row, int modifiers, int clickCount = 1, bool isMouse = true);
    // Select or deselect row `row` (circle, checkbox, menu, modified click).
    Q_INVOKABLE void toggle(int row, int clickCount = 1, bool isMouse = true);
    // Space while the grid has focus: toggles the focused tile, straight in the
    // queue. False when no tile has the focus, so the key goes on.
    Q_INVOKABLE bool spaceKey();
    // A key pressed on the focused tile `row`, laid out `columns` to a line:
    // moves the focus, opens, selects or goes back (see TileKeys). False when
    // it is no key of the tiles.
    Q_INVOKABLE bool keyPress(int row, int key, int modifiers, int columns);
    // The tile at `row` took the keyboard focus (a click, Tab, or the keys).
    Q_INVOKABLE void focusTile(int row);
    Q_INVOKABLE void hover(int row, bool inside);
    Q_INVOKABLE void goBack(int clickCount = 1, bool isMouse = true);
    // -1 for the root, else the position in the stack.
    Q_INVOKABLE void goToCrumb(int index, int clickCount = 1, bool isMouse = true);
    Q_INVOKABLE void loadMore();
    Q_INVOKABLE void loadSmallFiles();
    // The chip that is on turns back to "all"; the second click of a double-click
    // is dropped, as everywhere a click navigates or selects.
    Q_INVOKABLE void chooseFilter(const QString &raw, int clickCount = 1, bool isMouse = true);
    Q_INVOKABLE void showEverything();
    Q_INVOKABLE void reveal(int row);
    Q_INVOKABLE void copyPath(int row);
    Q_INVOKABLE void preview(int row);
    // Opens the folder at `path` (lossless text) if the result has it.
    Q_INVOKABLE void focusOn(const QString &path);
    Q_INVOKABLE void chooseCategory(const QString &category, int clickCount = 1, bool isMouse = true);
    Q_INVOKABLE void openFullDiskAccessSettings();
    // Widths of the composition strip's segments for a bar `width` wide: each
    // its share of the width less the gaps, and at least 2.
    Q_INVOKABLE QVariantList segmentWidths(double width) const { return m_header.segmentWidths(width); }
    // How many legend entries fit in `width`: 6, else 4, 3 or 2 (or all, when
    // fewer), given the width of each entry in order and the gap between them.
    Q_INVOKABLE int legendCount(const QVariantList &entryWidths, double width, double gap) const
    {
        return SpaceHeader::legendCount(entryWidths, width, gap);
    }

    // The paths a running removal is taking; their tiles fade out. Empty when
    // none runs.
    void setVanishing(const QSet<QByteArray> &paths);

    // -- Conveniences for tests and C++ callers --------------------------------
    int rowOf(const QByteArray &id) const;
    void focus(const QByteArray &asked);

signals:
    void stateChanged();
    void modeChanged();
    void searchChanged();
    void filterChanged();
    void sortChanged();
    void layoutChanged();
    void tilesChanged();
    void folderChanged();
    void hoveredChanged();
    void gridFocusedChanged();
    void focusRowChanged();
    void selectionChanged();
    void progressChanged();
    void compositionChanged();
    void recentsChanged();
    void smallFilesLoaded(const QByteArray &path);
    void reducedMotionChanged();
    // A removal started; the view answers with steamClean().
    void removalStarted();
    // The preview window should show this file (see FilePreview::details).
    void previewRequested(const QVariantMap &details);

private:
    // The tile of a row the view holds; none past them.
    std::optional<ExplorerTile> tileAt(int row) const;
    // Whether the loose small files of `node` can be read from disk.
    bool smallFilesListable(const DirNodePtr &node) const;
    // Bytes of `node`'s small files that no listing stands for.
    qint64 smallFilesRest(const DirNodePtr &node) const;
    // Rebuilds (or reuses) the list and brings the rows in line with it.
    void refresh();
    void syncRows(bool resetAll);
    void appendRows();
    void setShown(int shown);
    void resetShown() { m_shown = pageSize; }
    void openNode(const DirNodePtr &node, int clickCount, bool isMouse);
    // After the navigator moved: clears the search if asked, and refreshes.
    // `from` is the path of the folder shown before, to focus the tile that
    // leads back to it.
    void folderMoved(bool clearSearch, const QByteArray &from = {});
    // Keeps the focus on its tile after the rows changed, or on the tile that
    // took its place.
    void followFocus();
    void setFocusRow(int row);
    QByteArray currentPath() const;
    void toggleInQueue(const ExplorerEntry &entry);
    void onResultChanged();
    void onRevisionChanged();
    void onQueueChanged();
    void followRemoval();

    QPointer<AppState> m_state;
    SpaceView::Mode m_mode = SpaceView::Mode::welcome;
    ExplorerQuery m_query;
    ExplorerLayout m_layout;
    SpaceNavigator m_navigator;
    SpaceHeader m_header{m_navigator};
    TileMemo m_memo;
    TileList m_otherTiles;      // welcome or discovering
    QList<QByteArray> m_rowIds; // ids of the rows as the view has them
    QList<size_t> m_rowSigs;    // and what they showed
    qint64 m_heaviest = 1;      // largest size among the rows, at least 1
    QTimer m_progressTimer;
    QHash<QByteArray, Risk> m_discoveredRisks; // verdicts of the running scan's entries
    int m_shown = pageSize;
    QByteArray m_hovered;
    bool m_gridFocused = false;
    QByteArray m_focusedId;
    int m_focusRow = -1;
    SmallFileStore m_smallFiles;
    QSet<QByteArray> m_vanishing;
    QSet<QByteArray> m_taking; // what the running removal takes, by path and by id
    SteamClean m_steamer;
    bool m_reducedMotion = false;
    QString m_lastFolderKey;
    Connections m_connections;
};
