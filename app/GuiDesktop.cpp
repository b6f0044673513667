#include "GuiDesktop.h"

#include "core/FileActions.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QUrl>
#include <QWindow>

#if SORVEL_HAVE_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#endif

namespace {

#if SORVEL_HAVE_DBUS && !defined(Q_OS_MACOS)
// A file URL that keeps every byte of the path.
QString fileUrl(const QByteArray &path) { return QString::fromLatin1("file://" + path.toPercentEncoding("/")); }
#endif

// One open folder dialog and the answer it owes. Answers exactly once: with the
// folder on acceptance, with nothing when rejected or destroyed unanswered.
class FolderRequest : public QObject
{
    Q_OBJECT

public:
    // `chosen`: the dialog's property that holds the answer.
    FolderRequest(QObject *dialog, const char *chosen, Desktop::FolderChosen done)
        : m_dialog(dialog), m_chosen(chosen), m_done(std::move(done))
    {
        dialog->setParent(this);
    }
    ~FolderRequest() override { answer({}); }

public slots:
    void accepted()
    {
        const QUrl url = m_dialog->property(m_chosen).toUrl();
        // The encoded form keeps bytes that are not valid UTF-8.
        answer(url.isLocalFile() ? QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1())
                                 : QByteArray());
    }
    void rejected() { answer({}); }

private:
    void answer(const QByteArray &path)
    {
        if (!m_done)
            return;
        auto done = std::move(m_done);
        m_done = nullptr;
        deleteLater();
        done(path);
    }

    QObject *m_dialog;
    const char *m_chosen;
    Desktop::FolderChosen m_done;
};

} // namespace

GuiDesktop::GuiDesktop(QQmlEngine *engine, QObject *parent) : QObject(parent), m_engine(engine) {}

void GuiDesktop::copyText(const QString &text) { QGuiApplication::clipboard()->setText(text); }

void GuiDesktop::reveal(const QByteArrayList &paths)
{
    if (paths.isEmpty())
        return;
#if SORVEL_HAVE_DBUS && !defined(Q_OS_MACOS)
    if (QDBusConnection bus = QDBusConnection::sessionBus(); bus.isConnected()) {
        QStringList uris;
        for (const QByteArray &path : paths)
            uris.append(fileUrl(path));
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
        call << uris << QString();
        // Asynchronous, so that a file manager that is slow to start never holds
        // up the caller; without one on the bus the folder is opened instead.
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
        const QByteArray first = paths.first();
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [first](QDBusPendingCallWatcher *w) {
            if (w->isError())
                FileActions::reveal({first});
            w->deleteLater();
        });
        return;
    }
#endif
    FileActions::reveal(paths);
}

void GuiDesktop::openDialog(const QByteArray &qml, const char *chosen, const QVariantMap &properties, FolderChosen done)
{
    QQmlComponent component(m_engine);
    component.setData("import QtQuick\nimport QtQuick.Dialogs\n" + qml, QUrl());
    QObject *dialog = component.create();
    if (!dialog) {
        qWarning().noquote() << "No dialog:" << component.errorString();
        done({});
        return;
    }
    for (auto it = properties.begin(); it != properties.end(); ++it)
        dialog->setProperty(it.key().toUtf8().constData(), it.value());
    if (m_window)
        dialog->setProperty("parentWindow", QVariant::fromValue(m_window.data()));

    auto *request = new FolderRequest(dialog, chosen, std::move(done));
    request->setParent(this);
    connect(dialog, SIGNAL(accepted()), request, SLOT(accepted()));
    connect(dialog, SIGNAL(rejected()), request, SLOT(rejected()));
    QMetaObject::invokeMethod(dialog, "open");
}

void GuiDesktop::chooseFolder(const QString &prompt, const QString &message, const QByteArray &startIn,
                              FolderChosen done)
{
    openDialog("FolderDialog { modality: Qt.ApplicationModal }\n", "selectedFolder",
               {{QStringLiteral("title"), message},
                {QStringLiteral("acceptLabel"), prompt},
                {QStringLiteral("currentFolder"), QUrl::fromLocalFile(QFile::decodeName(startIn))}},
               std::move(done));
}

void GuiDesktop::chooseFile(const QString &prompt, const QString &message, const QByteArray &startIn,
                            const QStringList &nameFilters, FolderChosen done)
{
    openDialog("FileDialog { modality: Qt.ApplicationModal; fileMode: FileDialog.OpenFile }\n", "selectedFile",
               {{QStringLiteral("title"), message},
                {QStringLiteral("acceptLabel"), prompt},
                {QStringLiteral("nameFilters"), nameFilters},
                {QStringLiteral("currentFolder"), QUrl::fromLocalFile(QFile::decodeName(startIn))}},
               std::move(done));
}

#include "GuiDesktop.moc"
