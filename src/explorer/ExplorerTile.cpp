#include "ExplorerTile.h"

QByteArray ExplorerTile::id() const
{
    if (const ExplorerEntry *e = entry())
        return e->id;
    return QByteArrayLiteral("placeholder-") + QByteArray::number(seed);
}

QString ExplorerTile::conditionName(Condition condition)
{
    switch (condition) {
    case Condition::clean:
        return QStringLiteral("clean");
    case Condition::stained:
        return QStringLiteral("stained");
    case Condition::bloated:
        return QStringLiteral("bloated");
    }
    return QStringLiteral("clean");
}
