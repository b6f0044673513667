// SteamClean: the steamer over the tile grid and its run from tile to tile
// while a removal is under way. The run is animation only: the removal goes on
// by itself and doesn't wait for it. Lives on the main thread; its steps are
// single-shot timers, so nothing runs while the steamer rests.
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSet>
#include <QSizeF>
#include <QTimer>

// The view draws the steamer centred on `position`, its jet from the nozzle
// to `jetTarget` while `jetting`, and lets the tiles in `steamed` evaporate.
// `motion` tells it how to move to the latest position: "glide" (the standard
// curve over 0.5 s), "hop" (a quick spring between tiles) or "park" (a slow
// spring home).
class SteamClean : public QObject
{
    Q_OBJECT

    Q_PROPERTY(QPointF position READ position NOTIFY moved)
    Q_PROPERTY(QString motion READ motion NOTIFY moved)
    Q_PROPERTY(QPointF jetTarget READ jetTarget NOTIFY jetChanged)
    Q_PROPERTY(bool jetting READ jetting NOTIFY jetChanged)
    Q_PROPERTY(bool cleaning READ cleaning NOTIFY cleaningChanged)

public:
    // Where the tiles lie: the view's grid (or list) and how far it scrolled.
    struct Grid {
        bool list = false;
        double cellWidth = 0;
        double cellHeight = 0;
        int columns = 1;
        double contentY = 0;
        QSizeF viewport;
    };

    struct Target {
        QByteArray id;
        QRectF rect;
        friend bool operator==(const Target &, const Target &) = default;
    };

    // The timing of one visit, in milliseconds, and the offsets of the design.
    static constexpr int settle = 260; // after the hop, before the jet
    static constexpr int aimJet = 120; // jet on, before the tile goes
    static constexpr int linger = 170; // after the tile went
    static constexpr int finish = 300; // after the last tile
    static constexpr QPointF fromAim{86.8, -78.4};

    explicit SteamClean(QObject *parent = nullptr);

    // The rectangle of row `row` in the viewport.
    static QRectF tileRect(int row, const Grid &grid);
    // The tiles among `rowIds` that a removal takes (`taking`) and that lie at
    // least partly in the viewport's height, in reading order.
    static QList<Target> targets(const QList<QByteArray> &rowIds, const QSet<QByteArray> &taking, const Grid &grid);
    // Where the jet aims on a tile: its icon, or in a list 55 % along the row.
    static QPointF aim(const QRectF &rect, bool list);
    // The steamer's home in the lower right corner of a grid of `size`.
    static QPointF home(const QSizeF &size);

    QPointF position() const { return m_position; }
    QString motion() const { return m_motion; }
    QPointF jetTarget() const { return m_jetTarget; }
    bool jetting() const { return m_jetting; }
    bool cleaning() const { return m_cleaning; }
    const QSet<QByteArray> &steamed() const { return m_steamed; }

    // The grid's size changed: the steamer glides home, unless it is busy.
    void park(const QSizeF &size);
    // Visits `targets` in turn. Does nothing while a run is under way or when
    // there is nothing to visit.
    void start(const QList<Target> &targets, bool list);
    // The removal ended: the tiles it left come back, the remaining visits are
    // dropped and the steamer goes home.
    void end();

signals:
    void moved();
    void jetChanged();
    void cleaningChanged();
    void steamedChanged();

private:
    void step();
    void moveTo(const QPointF &point, const QString &motion);
    void setJet(bool jetting, const QPointF &target);
    void setCleaning(bool cleaning);
    void goHome();

    QPointF m_position;
    QString m_motion = QStringLiteral("glide");
    QPointF m_jetTarget;
    bool m_jetting = false;
    bool m_cleaning = false;
    QSet<QByteArray> m_steamed;
    QSizeF m_size;

    QList<Target> m_targets;
    bool m_list = false;
    qsizetype m_next = 0;
    int m_phase = 0;
    QTimer m_timer;
};
