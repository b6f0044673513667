#include "SpaceHeader.h"

#include "TileText.h"

#include "core/FileCategory.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QLocale>
#include <QVariantMap>

#include <algorithm>
#include <climits>

namespace {

QString explorerText(const char *text) { return QCoreApplication::translate("Explorer", text); }

} // namespace

void SpaceHeader::setState(AppState *state) { m_state = state; }

DirNodePtr SpaceHeader::current() const { return m_navigator.current(m_state ? m_state->result() : nullptr); }

QStringList SpaceHeader::crumbs() const
{
    QStringList out;
    if (!m_state || !m_state->result() || !m_state->result()->root)
        return out;
    out << Fmt::displayName(m_state->result()->root->path());
    for (const DirNodePtr &node : m_navigator.stack())
        out << Paths::toDisplay(node->name);
    return out;
}

QString SpaceHeader::subtitle() const
{
    const DirNodePtr node = current();
    if (!node)
        return {};
    if (m_navigator.canGoBack())
        return Paths::abbreviateHome(node->path());
    // A saved scan took no time here; the banner above gives its date and file.
    if (m_state && m_state->isSavedScan())
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "Saved scan of %1")).arg(Paths::abbreviateHome(node->path()));
    const double duration = m_state && m_state->result() ? m_state->result()->duration : 0;
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "Scanned %1 in %2"))
        .arg(Paths::abbreviateHome(node->path()), Fmt::duration(duration));
}

QString SpaceHeader::sizeText() const
{
    const DirNodePtr node = current();
    if (!node)
        return {};
    return node->isUnreadable() ? TileText::unreadableSize() : Fmt::bytes(node->size);
}

QString SpaceHeader::filesText() const
{
    const DirNodePtr node = current();
    if (!node)
        return {};
    if (node->isUnreadable())
        return DirNode::errorText(node->readError);
    return QCoreApplication::translate("Explorer", "%Ln files", nullptr,
                                       int(std::min<qint64>(node->fileCount, INT_MAX)));
}

QString SpaceHeader::unreadableNotice() const
{
    const DirNodePtr node = current();
    return node && node->unreadableBelow > 0 ? TileText::unreadableNotice(node->unreadableBelow) : QString();
}

QVariantList SpaceHeader::unreadableFolders() const
{
    QVariantList out;
    const DirNodePtr node = current();
    if (!node)
        return out;
    // Only the branches that hold one are walked.
    std::vector<const DirNode *> stack{node.get()};
    while (!stack.empty() && out.size() < unreadableListLimit) {
        const DirNode *at = stack.back();
        stack.pop_back();
        if (at->hasReadError()) {
            QString reason = DirNode::errorText(at->readError);
            if (at->partlyRead)
                reason = explorerText(QT_TRANSLATE_NOOP("Explorer", "Partly read: %1")).arg(reason);
            // Below the home folder as "~/…", as the subtitle shows a folder.
            out << QVariantMap{{QStringLiteral("path"), Paths::abbreviateHome(at->path())},
                               {QStringLiteral("reason"), reason}};
        }
        for (auto it = at->children.rbegin(); it != at->children.rend(); ++it)
            if ((*it)->unreadableBelow > 0)
                stack.push_back(it->get());
    }
    return out;
}

QString SpaceHeader::discoveringTitle() const
{
    if (!m_state || m_state->scanTarget().isEmpty())
        return explorerText(QT_TRANSLATE_NOOP("Explorer", "Reading your disk"));
    return explorerText(QT_TRANSLATE_NOOP("Explorer", "Reading %1")).arg(Fmt::displayName(m_state->scanTarget()));
}

QString SpaceHeader::scanPath() const
{
    return m_state ? Paths::toDisplay(m_state->progress().currentPath) : QString();
}

QString SpaceHeader::scanBytesText() const { return Fmt::bytes(m_state ? m_state->progress().bytesScanned : 0); }

QString SpaceHeader::scanCountsText() const
{
    if (!m_state)
        return {};
    const ScanProgress &p = m_state->progress();
    return QCoreApplication::translate("Explorer", "%Ln files · %1 found", nullptr,
                                       int(std::min<qint64>(p.filesScanned, INT_MAX)))
        .arg(QLocale().toString(qint64(p.discovered.size())));
}

QVariantList SpaceHeader::composition() const
{
    QVariantList out;
    if (!m_state || !m_state->result())
        return out;
    struct Part {
        FileCategory category;
        qint64 size;
    };
    QList<Part> parts;
    for (const FileCategory c : FileCategory::allCases) {
        const CategoryTotal t = m_state->result()->total(c);
        if (t.size > 0)
            parts.append({c, t.size});
    }
    std::stable_sort(parts.begin(), parts.end(), [](const Part &a, const Part &b) { return a.size > b.size; });
    for (const Part &p : parts)
        out << QVariantMap{
            {QStringLiteral("category"), p.category.id()},
            {QStringLiteral("title"), p.category.title()},
            {QStringLiteral("size"), double(p.size)},
            {QStringLiteral("hue"), p.category.hue()},
            {QStringLiteral("help"), QStringLiteral("%1: %2").arg(p.category.title(), Fmt::bytes(p.size))},
        };
    return out;
}

QVariantList SpaceHeader::segmentWidths(double width) const
{
    QList<qint64> sizes;
    for (const QVariant &part : composition())
        sizes << qint64(part.toMap().value(QStringLiteral("size")).toDouble());
    QVariantList out;
    for (const double w : TileText::segmentWidths(sizes, width))
        out << w;
    return out;
}

int SpaceHeader::legendCount(const QVariantList &entryWidths, double width, double gap)
{
    QList<double> widths;
    for (const QVariant &w : entryWidths)
        widths << w.toDouble();
    return TileText::legendCount(widths, width, gap);
}

QVariantList SpaceHeader::recents() const
{
    QVariantList out;
    if (!m_state)
        return out;
    const QByteArrayList &recents = m_state->recents();
    for (qsizetype i = 0; i < recents.size() && i < 3; ++i)
        out << QVariantMap{{QStringLiteral("path"), Paths::toText(recents[i])},
                           {QStringLiteral("title"), Fmt::displayName(recents[i])},
                           {QStringLiteral("help"), Paths::toDisplay(recents[i])}};
    return out;
}
