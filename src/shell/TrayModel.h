// TrayModel: what the tray's panel shows and what its rows do, kept current
// from the application state. Lives on the GUI thread, with that state.
#pragma once

#include "core/Connections.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>
#include <QVariantList>

class AppState;

// The panel: the bytes freed this session (and those moved to the Trash), the first three volumes with their
// free space, the scan under way, and four rows. The rows act on the state;
// each of the first three asks for the main window first (windowRequested),
// so it is back on screen before anything changes in it.
class TrayModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString freedText READ freedText NOTIFY changed)
    // "1.2 GB waits in the Trash" for what this session moved there; empty when nothing.
    Q_PROPERTY(QString trashedText READ trashedText NOTIFY changed)
    // [{name, free}] for the first three volumes.
    Q_PROPERTY(QVariantList volumes READ volumes NOTIFY changed)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY changed)
    // "Reading Projects", and "12,408 files" under it.
    Q_PROPERTY(QString readingText READ readingText NOTIFY changed)
    Q_PROPERTY(QString filesText READ filesText NOTIFY changed)
    // [{action, title, symbol}] in order.
    Q_PROPERTY(QVariantList rows READ rows CONSTANT)

public:
    // Follows AppStateForeign's state unless given another.
    explicit TrayModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString freedText() const;
    QString trashedText() const;
    QVariantList volumes() const;
    bool isScanning() const;
    QString readingText() const;
    QString filesText() const;
    static QVariantList rows();

    // The panel is showing: the free space is read again (not in the demo).
    Q_INVOKABLE void refresh();
    // "open", "scanHome", "deepClean" or "quit".
    Q_INVOKABLE void trigger(const QString &action);

    static constexpr int shownVolumes = 3;

Q_SIGNALS:
    void changed();
    // Show the main window and bring it to the front.
    void windowRequested();
    void quitRequested();

private:
    QPointer<AppState> m_state;
    Connections m_connections;
};
