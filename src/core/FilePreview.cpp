#include "FilePreview.h"

#include "AllocatedSize.h"
#include "Fmt.h"
#include "Paths.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>
#include <QUrl>

#include <sys/stat.h>

namespace FilePreview {

QVariantMap details(const QByteArray &path)
{
    const QString text = Paths::toText(path);
    const QMimeDatabase mimes;
    const QMimeType mime = mimes.mimeTypeForFile(text);
    QString kind = QStringLiteral("other");
    QString content;
    if (mime.name().startsWith(QLatin1String("image/")))
        kind = QStringLiteral("image");
    else if (mime.inherits(QStringLiteral("text/plain"))) {
        QFile file(text);
        if (file.open(QIODevice::ReadOnly)) {
            kind = QStringLiteral("text");
            content = QString::fromUtf8(file.read(64 * 1024));
        }
    }
    struct stat st;
    const bool exists = ::lstat(path.constData(), &st) == 0;
    const QFileInfo info(text);
    return {
        {QStringLiteral("path"), text},
        {QStringLiteral("url"), QUrl::fromLocalFile(text)},
        {QStringLiteral("name"), Paths::toDisplay(Paths::lastComponent(path))},
        {QStringLiteral("location"), Paths::abbreviateHome(path)},
        {QStringLiteral("kind"), kind},
        {QStringLiteral("type"), mime.comment()},
        {QStringLiteral("text"), content},
        {QStringLiteral("exists"), exists},
        {QStringLiteral("size"), exists ? Fmt::bytes(allocatedSize(st)) : QString()},
        {QStringLiteral("modified"), exists ? QLocale().toString(info.lastModified(), QLocale::LongFormat) : QString()},
    };
}

} // namespace FilePreview
