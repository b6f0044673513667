#include "TileRoles.h"

#include "SpaceModel.h"
#include "TileText.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "removal/CleanQueue.h"
#include "safety/SafetyGuard.h"

#include <QCoreApplication>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

} // namespace

namespace TileRoles {

bool isLocked(const QByteArray &id) { return SafetyGuard::isProtected(id) && !SafetyGuard::isContentsOnly(id); }

QVariant value(const ExplorerTile &tile, int role, const Around &around)
{
    const ExplorerEntry *e = tile.entry();
    switch (role) {
    case SpaceModel::TileIdRole:
        return Paths::toText(tile.id());
    case SpaceModel::NameRole:
        return e ? e->name : QString();
    case SpaceModel::IsPlaceholderRole:
        return !e;
    case SpaceModel::IconPathRole: {
        // A trailing "/" tells the icon provider a folder that is not on disk.
        const QByteArray path = e ? e->id : tile.placeholder().path();
        const bool folder = e ? e->isDirectory : tile.placeholder() == PlaceholderKind::folder;
        return Paths::toText(folder && !path.endsWith('/') ? path + '/' : path);
    }
    case SpaceModel::ConditionRole:
        return ExplorerTile::conditionName(tile.condition);
    case SpaceModel::SeedRole:
        return tile.seed;
    case SpaceModel::SizeTextRole:
        if (!e)
            return QString();
        if (e->measuring && e->size == 0)
            return explorerText(QT_TRANSLATE_NOOP("Explorer", "Measuring…"));
        if (e->isUnreadable())
            return TileText::unreadableSize();
        return Fmt::bytes(e->size);
    case SpaceModel::KindLineRole:
        return e ? TileText::kindLine(*e) : QString();
    case SpaceModel::HelpRole:
    case SpaceModel::HelpSymbolsRole: {
        if (!e)
            return QString();
        HelpFacts facts;
        facts.condition = tile.condition;
        facts.layout = around.layout;
        facts.isProtected = SafetyGuard::isProtected(e->id);
        facts.isContentsOnly = SafetyGuard::isContentsOnly(e->id);
        if (facts.isProtected)
            facts.protectedReason = SafetyGuard::reason(e->id);
        if (around.queue) {
            facts.inQueue = around.queue->contains(e->id);
            facts.includes = around.queue->includes(e->id);
            if (const auto covering = around.queue->covering(e->id))
                facts.coveringName = covering->name;
        }
        const QList<HelpLine> lines = TileText::helpLines(*e, facts);
        if (role == SpaceModel::HelpSymbolsRole) {
            QStringList symbols;
            for (const HelpLine &line : lines)
                symbols << line.symbol;
            return symbols;
        }
        return TileText::helpText(lines);
    }
    case SpaceModel::IsDirectoryRole:
        return e && e->isDirectory;
    case SpaceModel::MeasuringRole:
        return e && e->measuring;
    case SpaceModel::CanOpenRole:
        return e && e->node != nullptr;
    case SpaceModel::CanPreviewRole:
        return e && !e->isDirectory;
    case SpaceModel::IncludesRole:
        return e && around.queue && around.queue->includes(e->id);
    case SpaceModel::InheritedRole:
        return e && around.queue && !around.queue->contains(e->id) && around.queue->covering(e->id).has_value();
    case SpaceModel::LockedRole:
        return e && isLocked(e->id);
    case SpaceModel::RiskLevelRole:
        return e ? e->risk.level.name() : QString();
    case SpaceModel::RiskTitleRole:
        return e ? e->risk.title : QString();
    case SpaceModel::RiskHelpRole:
        return e && e->risk.hasBadge() ? QStringLiteral("%1: %2").arg(e->risk.title, e->risk.why) : QString();
    case SpaceModel::ArtifactKindRole:
        return e ? e->artifactKind : QString();
    case SpaceModel::WeightRole:
        return e ? double(e->size) / double(around.heaviest) : 0.0;
    case SpaceModel::WaitingRole:
        return around.waiting;
    case SpaceModel::BarFactorRole:
        return 0.45 + double((tile.seed * 37) % 40) / 100.0;
    case SpaceModel::SelectActionRole:
        return e && around.queue && around.queue->includes(e->id)
                   ? explorerText(QT_TRANSLATE_NOOP("Explorer", "Deselect"))
                   : explorerText(QT_TRANSLATE_NOOP("Explorer", "Select for Cleaning"));
    case SpaceModel::AccessibleNameRole:
        return e ? TileText::accessibleName(*e, around.total) : QString();
    case SpaceModel::VanishingRole:
        return e && around.vanishing && around.vanishing->contains(e->id);
    case SpaceModel::UnreadableRole:
        return e && e->isUnreadable();
    case SpaceModel::UnreadableCountRole:
        return e ? e->unreadableBelow : 0;
    default:
        return {};
    }
}

} // namespace TileRoles
