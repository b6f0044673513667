#include "Translations.h"

#include <QCoreApplication>
#include <QTranslator>

namespace {

// Loads the table at `file` into a new translator owned by the application and
// installs it; null when it can't.
QTranslator *installTable(const QString &file, const QString &name)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    translator->setObjectName(name);
    if (!translator->load(file) || !QCoreApplication::installTranslator(translator)) {
        delete translator;
        return nullptr;
    }
    return translator;
}

} // namespace

namespace Translations {

QTranslator *install(Platform platform)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return nullptr;
    // Translators are searched newest first, so the English forms go in before
    // any platform wording.
    const QString english = QStringLiteral("sorvel_en");
    if (!app->findChild<QTranslator *>(english, Qt::FindDirectChildrenOnly))
        installTable(QStringLiteral(":/i18n/sorvel_en.qm"), english);
    if (platform != Platform::linux)
        return nullptr;
    return installTable(QStringLiteral(":/i18n/sorvel_en_linux.qm"), QStringLiteral("sorvel_en_linux"));
}

} // namespace Translations
