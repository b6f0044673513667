#include "SingleInstance.h"

#include "core/Paths.h"

#include <QDir>
#include <QFile>
#include <QUrl>

#if SORVEL_HAVE_DBUS
#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#endif

namespace {

const QString appId = QStringLiteral(SORVEL_APP_ID);
const QString applicationInterface = QStringLiteral("org.freedesktop.Application");

// The object path of an application id: "org.sorvel.Cleaner" is served at
// "/org/sorvel/Cleaner".
QString objectPath() { return u'/' + QString(appId).replace(u'.', u'/'); }

// The start's own environment, which the running instance may use to be
// allowed to take the focus.
QVariantMap platformData()
{
    QVariantMap data;
    if (qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"))
        data.insert(QStringLiteral("desktop-startup-id"), qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    if (qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"))
        data.insert(QStringLiteral("activation-token"), qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
    return data;
}

// The argument after the first `flag`, if any (a later repeat is not looked at).
std::optional<QByteArray> valueAfter(const QByteArrayList &arguments, const char *flag)
{
    const qsizetype at = arguments.indexOf(flag);
    if (at < 0 || at + 1 >= arguments.size())
        return std::nullopt;
    return arguments.at(at + 1);
}

#if SORVEL_HAVE_DBUS
class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(SingleInstance *instance) : QDBusAbstractAdaptor(instance), m_instance(instance) {}

public slots:
    void Activate(const QVariantMap &) { m_instance->activate(); }
    void Open(const QStringList &uris, const QVariantMap &) { m_instance->open(uris); }
    void ActivateAction(const QString &name, const QVariantList &parameter, const QVariantMap &)
    {
        m_instance->activateAction(name, parameter);
    }

private:
    SingleInstance *m_instance;
};
#endif

} // namespace

SingleInstance::SingleInstance(QObject *parent) : QObject(parent) {}

SingleInstance::Role SingleInstance::start(const QByteArrayList &arguments)
{
#if SORVEL_HAVE_DBUS
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Role::Alone;
    // The object first and the name second: a start that finds the name taken
    // always finds someone to answer it.
    new ApplicationAdaptor(this);
    if (!bus.registerObject(objectPath(), this)) {
        m_lastError = bus.lastError().message();
        return Role::Alone;
    }
    if (bus.registerService(appId))
        return Role::First;
    bus.unregisterObject(objectPath());
    return handOver(arguments);
#else
    Q_UNUSED(arguments);
    return Role::Alone;
#endif
}

SingleInstance::Role SingleInstance::handOver(const QByteArrayList &arguments)
{
#if SORVEL_HAVE_DBUS
    QList<QDBusMessage> calls;
    const auto call = [](const QString &method, const QVariantList &values) {
        QDBusMessage message = QDBusMessage::createMethodCall(appId, objectPath(), applicationInterface, method);
        message.setArguments(values);
        return message;
    };
    // A folder is scanned, a file opened as a saved scan.
    const auto target =
        valueAfter(arguments, "-open") ? valueAfter(arguments, "-open") : valueAfter(arguments, "-scan");
    if (target) {
        // The running instance has its own working folder and may have another
        // home: the path goes over as an absolute file URL, byte for byte.
        QByteArray path = Paths::expandTilde(*target);
        if (!path.startsWith('/'))
            path = QFile::encodeName(QDir::currentPath()) + '/' + path;
        const QString uri = QStringLiteral("file://") + QString::fromLatin1(path.toPercentEncoding("/"));
        calls << call(QStringLiteral("Open"), {QStringList{uri}, platformData()});
    }
    if (const auto section = valueAfter(arguments, "-section"))
        calls << call(QStringLiteral("ActivateAction"),
                      {QStringLiteral("section"), QVariantList{QString::fromUtf8(*section)}, platformData()});
    if (calls.isEmpty())
        calls << call(QStringLiteral("Activate"), {platformData()});

    // A first start still building its window answers once its event loop
    // runs, which may take a few seconds on a slow machine.
    constexpr int answerWithin = 25000;
    for (const QDBusMessage &message : std::as_const(calls)) {
        const QDBusMessage reply = QDBusConnection::sessionBus().call(message, QDBus::Block, answerWithin);
        if (reply.type() == QDBusMessage::ErrorMessage) {
            m_lastError = reply.errorMessage();
            return Role::NoAnswer;
        }
    }
    return Role::HandedOver;
#else
    Q_UNUSED(arguments);
    return Role::Alone;
#endif
}

void SingleInstance::activate() { emit activateRequested(); }

void SingleInstance::open(const QStringList &uris)
{
    emit activateRequested();
    // One scan at a time: the first folder is the one scanned.
    for (const QString &uri : uris) {
        const QUrl url(uri);
        if (url.isLocalFile()) {
            emit scanRequested(url);
            return;
        }
    }
}

void SingleInstance::activateAction(const QString &name, const QVariantList &parameter)
{
    emit activateRequested();
    if (name == QLatin1String("scan-home"))
        emit scanRequested(QUrl::fromLocalFile(QDir::homePath()));
    else if (name == QLatin1String("deep-clean"))
        emit sectionRequested(QStringLiteral("cleanup"));
    else if (name == QLatin1String("section") && parameter.size() == 1)
        emit sectionRequested(parameter.first().toString());
}

#include "SingleInstance.moc"
