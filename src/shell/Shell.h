// Shell: the QML singleton the window binds to. It owns the scan controls,
// the sheet presenter and the toast timer, and keeps them current from the
// application state; it lives on the GUI thread, with that state.
#pragma once

#include "ModalPresenter.h"
#include "ScanControls.h"
#include "ToastTimer.h"

#include <QList>
#include <QObject>
#include <QQmlEngine>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

class AppState;

// The window's view of the application state: what the top bar, the scan menu,
// the sheets and the toasts show, kept current from AppState. QML binds to it
// and calls AppState for every action.
class Shell : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(ScanControls *scan READ scan CONSTANT)
    Q_PROPERTY(ModalPresenter *modal READ modal CONSTANT)
    Q_PROPERTY(ToastTimer *toastTimer READ toastTimer CONSTANT)
    // {raw, title, symbol, shortcut} for each area, in order.
    Q_PROPERTY(QVariantList areas READ areas CONSTANT)
    Q_PROPERTY(QString area READ area NOTIFY sectionChanged)
    Q_PROPERTY(int areaIndex READ areaIndex NOTIFY sectionChanged)
    Q_PROPERTY(QStringList areaTitles READ areaTitles CONSTANT)
    Q_PROPERTY(QStringList areaSymbols READ areaSymbols CONSTANT)
    // "Space (Ctrl+1)": the help of the area switcher's buttons.
    Q_PROPERTY(QStringList areaToolTips READ areaToolTips CONSTANT)
    Q_PROPERTY(bool hasResult READ hasResult NOTIFY resultChanged)
    // Anything is selected: the selection bar shows.
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    // "Undo Last Removal" can be chosen: the journal has a removal still in
    // the Trash, and no removal or undo is under way.
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY canUndoChanged)
    // The selection bar: the total size, and the count per area.
    Q_PROPERTY(QString selectionTotal READ selectionTotal NOTIFY selectionChanged)
    Q_PROPERTY(QString selectionSources READ selectionSources NOTIFY selectionChanged)
    // "⌘⌫" on macOS, "Ctrl+Backspace" elsewhere.
    Q_PROPERTY(QString reviewShortcutText READ reviewShortcutText CONSTANT)
    // The Go menu: {title, raw} of every item of every area, "Space › Overview".
    Q_PROPERTY(QVariantList goEntries READ goEntries CONSTANT)
    // {raw, title} of the items of the current area.
    Q_PROPERTY(QVariantList areaItems READ areaItems NOTIFY sectionChanged)
    // {path, name} of the recent targets; {path, name, isInternal} of the volumes.
    Q_PROPERTY(QVariantList recentRows READ recentRows NOTIFY recentsChanged)
    Q_PROPERTY(QVariantList volumeRows READ volumeRows NOTIFY volumesChanged)
    // The free-space chip; hidden while the root volume is not known.
    Q_PROPERTY(bool hasFreeSpace READ hasFreeSpace NOTIFY volumesChanged)
    Q_PROPERTY(QString freeText READ freeText NOTIFY volumesChanged)
    Q_PROPERTY(QString freeHelp READ freeHelp NOTIFY volumesChanged)
    Q_PROPERTY(double usedFraction READ usedFraction NOTIFY volumesChanged)
    Q_PROPERTY(QString homePath READ homePath CONSTANT)
    Q_PROPERTY(QString applicationsPath READ applicationsPath CONSTANT)
    // The window draws its own title bar where the platform lets it.
    Q_PROPERTY(bool customTitleBar READ customTitleBar CONSTANT)

public:
    // Follows `state` (AppStateForeign's instance when made by QML).
    explicit Shell(AppState *state, QObject *parent = nullptr);
    static Shell *create(QQmlEngine *, QJSEngine *);

    ScanControls *scan() { return &m_scan; }
    ModalPresenter *modal() { return &m_modal; }
    ToastTimer *toastTimer() { return &m_toastTimer; }
    QVariantList areas() const;
    QString area() const;
    int areaIndex() const;
    QStringList areaTitles() const;
    QStringList areaSymbols() const;
    QStringList areaToolTips() const;
    bool hasResult() const;
    bool hasSelection() const;
    bool canUndo() const;
    Q_INVOKABLE void undoLastRemoval();
    QVariantList goEntries() const;
    // The application became active again: the disk access may have been
    // granted meanwhile, and volumes may have come or gone.
    Q_INVOKABLE void onActivated();
    QVariantList areaItems() const;
    QVariantList recentRows() const;
    QVariantList volumeRows() const;
    bool hasFreeSpace() const;
    QString freeText() const;
    QString freeHelp() const;
    double usedFraction() const;
    QString homePath() const;
    QString applicationsPath() const;

    // Shows the area's last item, or its first (the top bar's switcher and
    // the Go menu). By mouse, the second click of a double-click is dropped.
    Q_INVOKABLE void goToArea(const QString &areaRaw);
    Q_INVOKABLE void goToAreaAt(int index, int clickCount = 1, bool isMouse = true);
    // Shows an item of the current area (the area header's tabs).
    Q_INVOKABLE void goToSection(const QString &itemRaw, int clickCount = 1, bool isMouse = true);
    // The title of a sidebar item, by raw value.
    Q_INVOKABLE QString titleOf(const QString &itemRaw) const;
    // Scans the folder of a drop and says whether it was taken.
    Q_INVOKABLE bool dropUrls(const QList<QUrl> &urls);
    Q_INVOKABLE QString displayName(const QString &pathText) const;
    Q_INVOKABLE void clearErrorMessage();
    QString selectionTotal() const;
    QString selectionSources() const;
    QString reviewShortcutText() const;
    // The selection bar's buttons and its drop of dragged items (their JSON).
    Q_INVOKABLE void clearSelection();
    Q_INVOKABLE void reviewSelection();
    Q_INVOKABLE bool dropItems(const QStringList &payloads);
    // The caption of a sidebar item by raw value, as it reads inside a
    // sentence: "the heaviest files, ranked".
    Q_INVOKABLE QString captionOf(const QString &itemRaw) const;
    // "⌘1" on macOS, "Ctrl+1" elsewhere.
    Q_INVOKABLE QString shortcutText(int digit) const;
    bool customTitleBar() const;

Q_SIGNALS:
    void sectionChanged();
    void resultChanged();
    void selectionChanged();
    void canUndoChanged();
    void recentsChanged();
    void volumesChanged();

private:
    void followScan();

    AppState *m_state;
    ScanControls m_scan;
    ModalPresenter m_modal;
    ToastTimer m_toastTimer;
};
