#include "PlaceholderKind.h"

QByteArray PlaceholderKind::path() const
{
    switch (m_value) {
    case folder:
        return QByteArrayLiteral("/placeholder");
    case document:
        return QByteArrayLiteral("/placeholder.pdf");
    case text:
        return QByteArrayLiteral("/placeholder.txt");
    case movie:
        return QByteArrayLiteral("/placeholder.mov");
    case image:
        return QByteArrayLiteral("/placeholder.png");
    case archive:
        return QByteArrayLiteral("/placeholder.zip");
    case app:
        return QByteArrayLiteral("/placeholder.app");
    case diskImage:
        return QByteArrayLiteral("/placeholder.dmg");
    }
    return QByteArrayLiteral("/placeholder");
}

namespace Placeholders {
using K = PlaceholderKind;
const std::array<PlaceholderKind, 24> pattern = {
    K::folder, K::document, K::movie,   K::folder,    K::image,  K::archive, K::text,     K::folder,
    K::app,    K::image,    K::folder,  K::diskImage, K::movie,  K::text,    K::folder,   K::document,
    K::image,  K::folder,   K::archive, K::text,      K::folder, K::movie,   K::document, K::folder,
};
const QSet<int> stained = {1, 5, 11, 14, 19};
const QSet<int> bloated = {2, 12};
} // namespace Placeholders
