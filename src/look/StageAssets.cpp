#include "StageAssets.h"

#include <QFileInfo>

StageAssets::StageAssets(QObject *parent) : StageAssets(QStringLiteral(":/sorvel/artwork"), parent) {}

StageAssets::StageAssets(const QString &folder, QObject *parent) : QObject(parent), m_folder(folder) {}

QStringList StageAssets::puffs(bool dark)
{
    std::optional<QStringList> &found = dark ? m_darkPuffs : m_lightPuffs;
    if (!found) {
        found.emplace();
        for (int i = 1; i <= puffCount; ++i) {
            const QUrl puff = url(
                QStringLiteral("puff-%1-%2.png").arg(dark ? QStringLiteral("dark") : QStringLiteral("light")).arg(i));
            if (!puff.isEmpty())
                found->append(puff.toString());
        }
    }
    return *found;
}

QUrl StageAssets::url(const QString &name) const
{
    const QString path = m_folder + u'/' + name;
    if (name.isEmpty() || !QFileInfo(path).isFile())
        return {};
    if (path.startsWith(u':'))
        return QUrl(QStringLiteral("qrc") + path);
    return QUrl::fromLocalFile(path);
}
