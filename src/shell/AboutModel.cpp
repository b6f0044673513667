#include "AboutModel.h"

#include <QVariantMap>
#include <QtGlobal>

// Set for this file by the build: the project's version and the icon set's
// release as package.json pins it.
#ifndef SORVEL_VERSION
#error "SORVEL_VERSION is set by the build"
#endif
#ifndef SORVEL_ICONS_VERSION
#error "SORVEL_ICONS_VERSION is set by the build"
#endif

namespace {

QVariantMap credit(const QString &title, const QString &detail)
{
    return {{QStringLiteral("title"), title}, {QStringLiteral("detail"), detail}};
}

} // namespace

QString AboutModel::name() const { return tr("Sorvel Cleaner"); }

QString AboutModel::version() { return QStringLiteral(SORVEL_VERSION); }

QString AboutModel::versionText() const { return tr("Version %1").arg(version()); }

QString AboutModel::licenceText() const
{
    return tr("Copyright © the Sorvel Cleaner developers. All rights reserved.");
}

QVariantList AboutModel::credits() const
{
    return {
        credit(tr("Qt %1").arg(QString::fromLatin1(qVersion())),
               tr("The window, the text and the threads. By The Qt Company and its contributors, under the GNU "
                  "LGPL version 3.")),
        credit(tr("Lucide %1").arg(QStringLiteral(SORVEL_ICONS_VERSION)),
               tr("The symbols. By the Lucide contributors, under the ISC licence.")),
        credit(tr("OpenSSL"), tr("SHA-256 for proving files identical. By the OpenSSL Project, under the Apache "
                                 "License 2.0.")),
        credit(tr("Steam textures"),
               tr("Drawn by Sorvel Cleaner's own generator, src/look/artwork/ArtworkMaker.cpp in its repository.")),
    };
}
