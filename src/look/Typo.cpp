#include "Typo.h"

#include <QFontDatabase>

namespace Typo {

QFont caption()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(11);
    font.setWeight(QFont::Medium);
    return font;
}

QFont micro()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(10);
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace Typo
