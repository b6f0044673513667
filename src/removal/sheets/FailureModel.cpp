#include "FailureModel.h"

#include "SheetText.h"

#include "shell/AppStateForeign.h"

#include "core/FileActions.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "removal/FailureRules.h"
#include "removal/RowLimit.h"
#include "state/AppState.h"

#include <QByteArrayList>
#include <QLocale>

namespace {

QByteArray parentOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.left(slash);
}

} // namespace

FailureModel::FailureModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void FailureModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    m_failures = state && state->removal()->deletionFailures() ? *state->removal()->deletionFailures()
                                                               : QList<DeletionFailure>();
    if (state)
        connect(state, &AppState::hasFullDiskAccessChanged, this, &FailureModel::accessChanged);
    Q_EMIT accessChanged();
}

QString FailureModel::heading() const { return FailureRules::heading(m_failures.size()); }

QString FailureModel::subtitle(const DeletionFailure &failure)
{
    if (failure.reason == DeletionFailure::Reason::other ||
        failure.reason == DeletionFailure::Reason::changedSinceReview)
        return failure.detail;
    return Paths::abbreviateHome(parentOf(failure.path));
}

QVariantList FailureModel::groups() const
{
    QVariantList out;
    for (const FailureRules::Group &group : FailureRules::groups(m_failures)) {
        QVariantList rows;
        for (qsizetype i = 0; i < RowLimit::shown(group.failures.size(), RowLimit::failureRows); ++i) {
            const DeletionFailure &failure = group.failures[i];
            rows.append(QVariantMap{
                {QStringLiteral("path"), Paths::toText(failure.path)},
                {QStringLiteral("name"), SheetText::nameOf(failure.path)},
                {QStringLiteral("subtitle"), subtitle(failure)},
            });
        }
        out.append(QVariantMap{
            {QStringLiteral("title"), group.reason.title()},
            {QStringLiteral("countText"), QLocale().toString(group.failures.size())},
            {QStringLiteral("explanation"), group.reason.explanation()},
            {QStringLiteral("rows"), rows},
            {QStringLiteral("more"), RowLimit::moreLine(group.failures.size(), RowLimit::failureRows)},
        });
    }
    return out;
}

bool FailureModel::showsFullDiskAccess() const
{
    return FailureRules::showsFullDiskAccess(m_failures, !m_state || m_state->hasFullDiskAccess());
}

void FailureModel::copyAll()
{
    QByteArrayList paths;
    for (const DeletionFailure &failure : m_failures)
        paths << failure.path;
    if (m_state)
        m_state->copyPaths(paths);
}

void FailureModel::copyGroup(int index)
{
    const QList<FailureRules::Group> all = FailureRules::groups(m_failures);
    if (!m_state || index < 0 || index >= all.size())
        return;
    QByteArrayList paths;
    for (const DeletionFailure &failure : all[index].failures)
        paths << failure.path;
    m_state->copyPaths(paths);
}

void FailureModel::openFullDiskAccess() { FileActions::openFullDiskAccessSettings(); }

void FailureModel::done()
{
    if (m_state)
        m_state->removal()->clearDeletionFailures();
}
