// FlatSteamer: the fixed measures of the hand-held steamer that cleans the
// tiles, and the angle it stands at. Constants and pure functions; any thread.
// QML reads them through the singleton Steamer; FlatSteamer.qml draws it.
#pragma once

#include <QObject>
#include <QPointF>
#include <QQmlEngine>
#include <QSizeF>

// The steamer is drawn in a frame of 96 × 84 at scale 1.2 and stands rotated
// by −24° about the frame's centre, its nozzle pointing down and to the left.
// While it jets it trembles by 1.2° at 9 radians a second. Its position is its
// centre; the nozzle tip lies at a fixed offset from there, where the jet
// starts.
//
//   rotation: Steamer.angle(seconds, jetting)
//   SteamJet { from: Qt.point(steamer.x + steamer.nozzle.x, ...) }
class FlatSteamer : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Steamer)
    QML_SINGLETON

    Q_PROPERTY(QSizeF frame READ frame CONSTANT)
    Q_PROPERTY(double scale READ drawScale CONSTANT)
    Q_PROPERTY(double stance READ stanceAngle CONSTANT)
    Q_PROPERTY(QPointF nozzle READ nozzle CONSTANT)
    Q_PROPERTY(QPointF drawnNozzle READ drawnNozzle CONSTANT)

public:
    using QObject::QObject;

    static constexpr double width = 96;
    static constexpr double height = 84;
    static constexpr double scale = 1.2;
    // Degrees; negative turns counter-clockwise on screen.
    static constexpr double stance = -24;
    static constexpr double trembleAmplitude = 1.2;
    // Radians a second.
    static constexpr double trembleFrequency = 9;

    static QSizeF frame() { return {width, height}; }
    static double drawScale() { return scale; }
    static double stanceAngle() { return stance; }
    // The nozzle tip as an offset from the centre, on screen (scaled and
    // turned by the stance).
    static QPointF nozzle() { return {-52.8, 32.4}; }
    // The same point in the unturned, unscaled frame of 96 × 84: where the
    // drawing puts its nozzle tip so that it ends up at `nozzle`.
    static QPointF drawnNozzle();

    // The rotation in degrees `seconds` into a jet; the stance when not
    // jetting.
    Q_INVOKABLE static double angle(double seconds, bool jetting);
};
