// Look: the QML singleton through which views reach colours, fonts, curves and
// symbols. Owns the Appearance it resolves colours by; lives on the GUI thread
// with the QML engine.
#pragma once

#include "Appearance.h"
#include "Motion.h"
#include "Palette.h"
#include "Typo.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QQmlEngine>
#include <QUrl>
#include <QVariantList>

#include <cmath>

// The one door through which QML reaches the look: every colour resolved for
// the current appearance, the small fonts, the timing curves, the
// reduced-motion switch and the sources of symbols and file icons.
//
//   color: Look.ink
//   Behavior on opacity { Movement { curve: Look.hover } }
//   source: Look.symbol("sparkles", Look.accent)
class Look : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(bool dark READ dark NOTIFY appearanceChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY appearanceChanged)

    Q_PROPERTY(QColor canvas READ canvas NOTIFY appearanceChanged)
    Q_PROPERTY(QColor surface READ surface NOTIFY appearanceChanged)
    Q_PROPERTY(QColor raised READ raised NOTIFY appearanceChanged)
    Q_PROPERTY(QColor well READ well NOTIFY appearanceChanged)
    Q_PROPERTY(QColor line READ line NOTIFY appearanceChanged)
    Q_PROPERTY(QColor lineStrong READ lineStrong NOTIFY appearanceChanged)
    Q_PROPERTY(QColor panel READ panel NOTIFY appearanceChanged)
    Q_PROPERTY(QColor ink READ ink NOTIFY appearanceChanged)
    Q_PROPERTY(QColor ink2 READ ink2 NOTIFY appearanceChanged)
    Q_PROPERTY(QColor ink3 READ ink3 NOTIFY appearanceChanged)
    Q_PROPERTY(QColor accent READ accent NOTIFY appearanceChanged)
    Q_PROPERTY(QColor honeyInk READ honeyInk NOTIFY appearanceChanged)
    Q_PROPERTY(QColor ember READ ember NOTIFY appearanceChanged)
    Q_PROPERTY(QColor sorvelSubtle READ sorvelSubtle NOTIFY appearanceChanged)
    Q_PROPERTY(QColor emberSubtle READ emberSubtle NOTIFY appearanceChanged)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY appearanceChanged)
    Q_PROPERTY(QColor honey READ honey NOTIFY appearanceChanged)
    Q_PROPERTY(QColor magma READ magma NOTIFY appearanceChanged)
    Q_PROPERTY(QColor glass READ glass NOTIFY appearanceChanged)
    Q_PROPERTY(QColor glassEdge READ glassEdge NOTIFY appearanceChanged)
    Q_PROPERTY(QColor scrim READ scrim CONSTANT)
    Q_PROPERTY(QColor burnDim READ burnDim CONSTANT)
    // Gradient stops, first to last.
    Q_PROPERTY(QVariantList sorvelGradient READ sorvelGradient CONSTANT)
    Q_PROPERTY(QVariantList sorvelFlatGradient READ sorvelFlatGradient CONSTANT)

    Q_PROPERTY(QFont caption READ caption CONSTANT)
    Q_PROPERTY(QFont micro READ micro CONSTANT)
    Q_PROPERTY(QFont body READ body CONSTANT)

    // Timing curves: [duration in ms, x1, y1, x2, y2]; see Movement.qml.
    Q_PROPERTY(QVariantList press READ press CONSTANT)
    Q_PROPERTY(QVariantList hover READ hover CONSTANT)
    Q_PROPERTY(QVariantList modal READ modal CONSTANT)
    Q_PROPERTY(QVariantList indicator READ indicator CONSTANT)
    Q_PROPERTY(QVariantList evaporate READ evaporate CONSTANT)
    Q_PROPERTY(QVariantList closing READ closing CONSTANT)
    // The selection bar's spring: its settle time in ms, and where it stands at
    // a fraction of that time; see SpringValue.qml.
    Q_PROPERTY(int barSpringMs READ barSpringMs CONSTANT)

public:
    // Also installs the symbol and file-icon image providers on the engine, so
    // that every image URL this singleton hands out can be served. (No default
    // constructor: QML would prefer it to create().)
    explicit Look(QQmlEngine *engine);
    static Look *create(QQmlEngine *engine, QJSEngine *) { return new Look(engine); }

    bool dark() const { return m_appearance.isDark(); }
    bool reducedMotion() const { return m_appearance.reducedMotion(); }

    QColor canvas() const { return Palette::canvas.resolve(dark()).color(); }
    QColor surface() const { return Palette::surface.resolve(dark()).color(); }
    QColor raised() const { return Palette::raised.resolve(dark()).color(); }
    QColor well() const { return Palette::well.resolve(dark()).color(); }
    QColor line() const { return Palette::line.resolve(dark()).color(); }
    QColor lineStrong() const { return Palette::lineStrong.resolve(dark()).color(); }
    QColor panel() const { return Palette::panel.resolve(dark()).color(); }
    QColor ink() const { return Palette::ink.resolve(dark()).color(); }
    QColor ink2() const { return Palette::ink2.resolve(dark()).color(); }
    QColor ink3() const { return Palette::ink3.resolve(dark()).color(); }
    QColor accent() const { return Palette::accent.resolve(dark()).color(); }
    QColor honeyInk() const { return Palette::honeyInk.resolve(dark()).color(); }
    QColor ember() const { return Palette::ember.resolve(dark()).color(); }
    QColor sorvelSubtle() const { return Palette::sorvelSubtle.resolve(dark()).color(); }
    QColor emberSubtle() const { return Palette::emberSubtle.resolve(dark()).color(); }
    QColor onAccent() const { return Palette::onAccent.color(); }
    QColor honey() const { return Palette::honey.color(); }
    QColor magma() const { return Palette::magma.color(); }
    QColor glass() const { return Palette::glass.color(); }
    QColor glassEdge() const { return Palette::glassEdge.color(); }
    QColor scrim() const { return Palette::scrim.color(); }
    QColor burnDim() const { return Room::burnDim.color(); }
    QVariantList sorvelGradient() const;
    QVariantList sorvelFlatGradient() const;

    QFont caption() const { return Typo::caption(); }
    QFont micro() const { return Typo::micro(); }
    QFont body() const;

    QVariantList press() const { return curve(Motion::press); }
    QVariantList hover() const { return curve(Motion::hover); }
    QVariantList modal() const { return curve(Motion::modal); }
    QVariantList indicator() const { return curve(Motion::indicator); }
    QVariantList evaporate() const { return curve(Motion::evaporate); }
    int barSpringMs() const { return int(std::lround(Motion::bar.settleSeconds() * 1000.0)); }
    Q_INVOKABLE double barSpringAt(double fraction) const { return Motion::bar.at(fraction); }
    QVariantList closing() const { return curve(Motion::closing); }

    // The standard curve (0.23, 1), (0.32, 1) at a duration of its own.
    Q_INVOKABLE QVariantList standard(int milliseconds) const;

    Q_INVOKABLE QUrl symbol(const QString &name, const QColor &color) const;
    // The file icon of a path given in its lossless text form (Paths::toText).
    Q_INVOKABLE QUrl fileIcon(const QString &pathText) const;
    // The same icon stained with the grime of `seed` (see Stain).
    Q_INVOKABLE QUrl stainedIcon(const QString &pathText, int seed) const;
    Q_INVOKABLE QColor withAlpha(const QColor &color, double alpha) const;

    static void installImageProviders(QQmlEngine *engine);

Q_SIGNALS:
    void appearanceChanged();

private:
    static QVariantList curve(const Motion::Curve &c);

    Appearance m_appearance;
};
