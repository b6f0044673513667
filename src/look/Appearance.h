// Appearance: whether the desktop draws dark or light and wants animations.
// Owns the portal's last answers and the decision made from them; lives on the
// GUI thread, where it filters the application's palette changes.
#pragma once

#include <QObject>
#include <QString>

#include <optional>

#if SORVEL_HAVE_DBUS
#include <QDBusVariant>
#endif

class QPalette;

// Whether the desktop draws dark or light, and whether it wants animations.
//
// Dark or light, first match wins:
//  1. SORVEL_APPEARANCE=dark|light in the environment (for screenshots and for
//     desktops that tell nothing);
//  2. the freedesktop settings portal, org.freedesktop.appearance color-scheme
//     (GNOME, KDE Plasma and others through xdg-desktop-portal), followed live;
//  3. the application palette the platform theme gives Qt: a window colour
//     darker than its text means dark. This is what macOS and most Linux
//     platform themes report.
//
// Reduced motion, first match wins:
//  1. SORVEL_REDUCE_MOTION=1|0 in the environment;
//  2. the desktop's "enable animations" setting, org.gnome.desktop.interface
//     enable-animations read through the settings portal, followed live;
//  3. KDE Plasma's AnimationDurationFactor=0 in kdeglobals;
//  4. otherwise animations are on.
class Appearance : public QObject
{
    Q_OBJECT

public:
    explicit Appearance(QObject *parent = nullptr);

    bool isDark() const { return m_dark; }
    bool reducedMotion() const { return m_reducedMotion; }

    // The decisions, apart from where their inputs come from.
    static std::optional<bool> darkFromEnvironment(const QByteArray &value);
    // The portal's color-scheme: 1 prefers dark, 2 prefers light, 0 no preference.
    static std::optional<bool> darkFromColorScheme(uint value);
    static bool darkFromPalette(const QPalette &palette);
    static std::optional<bool> flagFromEnvironment(const QByteArray &value);
    // The [KDE] AnimationDurationFactor of a kdeglobals file; absent if not set.
    static std::optional<bool> reducedFromKdeGlobals(const QString &path);

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
#if SORVEL_HAVE_DBUS
    void portalChanged(const QString &ns, const QString &key, const QDBusVariant &value);
#endif

private:
    void update();
    void listenToPortal();
    void portalValue(const QString &ns, const QString &key, const QVariant &value);

    std::optional<bool> m_portalDark;
    std::optional<bool> m_portalAnimations;
    bool m_dark = true;
    bool m_reducedMotion = false;
};
