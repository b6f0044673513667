#include "Translations.h"

#include <QCoreApplication>
#include <QTranslator>

namespace Translations {

QTranslator *install(Platform platform)
{
    if (platform != Platform::linux || !QCoreApplication::instance())
        return nullptr;
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(QStringLiteral(":/i18n/sorvel_en_linux.qm")) ||
        !QCoreApplication::installTranslator(translator)) {
        delete translator;
        return nullptr;
    }
    return translator;
}

} // namespace Translations
