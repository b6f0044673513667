#include "JunkContentsModel.h"

#include "SheetText.h"

#include "shell/AppStateForeign.h"

#include "core/Desktop.h"
#include "core/Paths.h"
#include "deepclean/JunkLocation.h"
#include "removal/JunkContents.h"
#include "state/AppState.h"

#include <algorithm>

JunkContentsModel::JunkContentsModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void JunkContentsModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    if (state) {
        connect(state->queue(), &CleanQueue::itemsChanged, this, &JunkContentsModel::changed);
        connect(state->cleanup(), &CleanupModel::contentsChanged, this, &JunkContentsModel::changed);
        connect(state->cleanup(), &CleanupModel::loadingContentsChanged, this, &JunkContentsModel::changed);
    }
    Q_EMIT changed();
}

void JunkContentsModel::setLocationId(const QString &id)
{
    if (m_locationId == id)
        return;
    m_locationId = id;
    if (const JunkLocation *found = location())
        m_state->cleanup()->loadContents(false, *found);
    Q_EMIT changed();
}

void JunkContentsModel::setLimit(int limit)
{
    if (m_limit == limit)
        return;
    m_limit = limit;
    Q_EMIT changed();
}

const JunkLocation *JunkContentsModel::location() const
{
    if (!m_state)
        return nullptr;
    for (const JunkLocation &candidate : m_state->cleanup()->locations())
        if (candidate.id == m_locationId)
            return &candidate;
    return nullptr;
}

QList<JunkEntry> JunkContentsModel::allEntries() const
{
    return m_state ? m_state->cleanup()->contents().value(m_locationId) : QList<JunkEntry>();
}

QVariantList JunkContentsModel::entries() const
{
    QVariantList out;
    const JunkLocation *found = location();
    if (!found)
        return out;
    const QList<JunkEntry> all = allEntries();
    for (qsizetype i = 0; i < std::min<qsizetype>(all.size(), m_limit); ++i) {
        const JunkEntry &entry = all[i];
        out.append(QVariantMap{
            {QStringLiteral("path"), Paths::toText(entry.path)},
            {QStringLiteral("name"), SheetText::nameOf(entry.path)},
            {QStringLiteral("sizeText"), SheetText::sizeText(entry.size)},
            {QStringLiteral("ticked"), JunkContents::isTicked(*m_state->queue(), *found, entry)},
            {QStringLiteral("help"), JunkContents::tickHelp(*m_state->queue(), *found, entry)},
        });
    }
    return out;
}

QString JunkContentsModel::rest() const
{
    return location() ? JunkContents::restLine(allEntries(), m_limit) : QString();
}

bool JunkContentsModel::loading() const
{
    return m_state && m_state->cleanup()->loadingContents().contains(m_locationId);
}

bool JunkContentsModel::empty() const
{
    return m_state && !loading() && m_state->cleanup()->contents().contains(m_locationId) && allEntries().isEmpty();
}

void JunkContentsModel::toggle(const QString &path)
{
    const JunkLocation *found = location();
    if (!found)
        return;
    const QByteArray key = Paths::fromText(path);
    const QList<JunkEntry> all = allEntries();
    for (const JunkEntry &entry : all) {
        if (entry.path != key)
            continue;
        const QString toast = JunkContents::toggle(*m_state->queue(), *found, entry, all);
        if (!toast.isEmpty())
            m_state->showToast(toast, QStringLiteral("checklist"));
        return;
    }
}

void JunkContentsModel::copyPath(const QString &path)
{
    if (m_state)
        m_state->copyPaths({Paths::fromText(path)});
}

void JunkContentsModel::reveal(const QString &path)
{
    if (m_state && m_state->desktop())
        m_state->desktop()->reveal({Paths::fromText(path)});
}
