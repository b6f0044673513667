#include "Appearance.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>
#include <QStandardPaths>

#if SORVEL_HAVE_DBUS
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#endif

namespace {

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto portalSettings = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearanceNamespace = QStringLiteral("org.freedesktop.appearance");
const auto gnomeInterface = QStringLiteral("org.gnome.desktop.interface");

#if SORVEL_HAVE_DBUS
// Settings.Read wraps its answer in one variant too many; unwrap all of them.
QVariant unwrap(QVariant value)
{
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    if (value.userType() == qMetaTypeId<QDBusArgument>()) {
        const auto argument = value.value<QDBusArgument>();
        QDBusVariant inner;
        argument >> inner;
        value = inner.variant();
    }
    return value;
}
#endif

} // namespace

Appearance::Appearance(QObject *parent) : QObject(parent)
{
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installEventFilter(this);
    listenToPortal();
    update();
}

std::optional<bool> Appearance::darkFromEnvironment(const QByteArray &value)
{
    const QByteArray v = value.trimmed().toLower();
    if (v == "dark")
        return true;
    if (v == "light")
        return false;
    return std::nullopt;
}

std::optional<bool> Appearance::darkFromColorScheme(uint value)
{
    if (value == 1)
        return true;
    if (value == 2)
        return false;
    return std::nullopt;
}

bool Appearance::darkFromPalette(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

std::optional<bool> Appearance::flagFromEnvironment(const QByteArray &value)
{
    const QByteArray v = value.trimmed().toLower();
    if (v == "1" || v == "true" || v == "yes" || v == "on")
        return true;
    if (v == "0" || v == "false" || v == "no" || v == "off")
        return false;
    return std::nullopt;
}

std::optional<bool> Appearance::reducedFromKdeGlobals(const QString &path)
{
    if (!QFileInfo::exists(path))
        return std::nullopt;
    QSettings settings(path, QSettings::IniFormat);
    const QVariant factor = settings.value(QStringLiteral("KDE/AnimationDurationFactor"));
    if (!factor.isValid())
        return std::nullopt;
    bool ok = false;
    const double value = factor.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    return value <= 0.0;
}

void Appearance::update()
{
    bool dark = m_dark;
    if (const auto env = darkFromEnvironment(qgetenv("SORVEL_APPEARANCE")))
        dark = *env;
    else if (m_portalDark)
        dark = *m_portalDark;
    else if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        dark = darkFromPalette(QGuiApplication::palette());

    bool reduced = false;
    if (const auto env = flagFromEnvironment(qgetenv("SORVEL_REDUCE_MOTION")))
        reduced = *env;
    else if (m_portalAnimations)
        reduced = !*m_portalAnimations;
    else {
        const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        reduced = reducedFromKdeGlobals(config + QStringLiteral("/kdeglobals")).value_or(false);
    }

    if (dark == m_dark && reduced == m_reducedMotion)
        return;
    m_dark = dark;
    m_reducedMotion = reduced;
    Q_EMIT changed();
}

bool Appearance::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == QCoreApplication::instance() && event->type() == QEvent::ApplicationPaletteChange)
        update();
    return QObject::eventFilter(watched, event);
}

void Appearance::portalValue(const QString &ns, const QString &key, const QVariant &value)
{
    if (ns == appearanceNamespace && key == QStringLiteral("color-scheme")) {
        bool ok = false;
        const uint scheme = value.toUInt(&ok);
        m_portalDark = ok ? darkFromColorScheme(scheme) : std::nullopt;
    } else if (ns == gnomeInterface && key == QStringLiteral("enable-animations")) {
        if (value.userType() == QMetaType::Bool)
            m_portalAnimations = value.toBool();
    } else {
        return;
    }
    update();
}

void Appearance::listenToPortal()
{
#if SORVEL_HAVE_DBUS
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portalService, portalPath, portalSettings, QStringLiteral("SettingChanged"), this,
                SLOT(portalChanged(QString, QString, QDBusVariant)));
    const std::pair<QString, QString> wanted[] = {{appearanceNamespace, QStringLiteral("color-scheme")},
                                                  {gnomeInterface, QStringLiteral("enable-animations")}};
    for (const auto &[ns, key] : wanted) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(portalService, portalPath, portalSettings, QStringLiteral("Read"));
        call << ns << key;
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, 2000), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [this, ns = ns, key = key](QDBusPendingCallWatcher *w) {
                    const QDBusPendingReply<QVariant> reply = *w;
                    if (!reply.isError())
                        portalValue(ns, key, unwrap(reply.value()));
                    w->deleteLater();
                });
    }
#endif
}

#if SORVEL_HAVE_DBUS
void Appearance::portalChanged(const QString &ns, const QString &key, const QDBusVariant &value)
{
    portalValue(ns, key, unwrap(value.variant()));
}
#endif
