#include "DeletionModel.h"

#include "SheetText.h"

#include "shell/AppStateForeign.h"

#include "core/Paths.h"
#include "removal/RowLimit.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

QString translated(const char *context, const char *text) { return QCoreApplication::translate(context, text); }

} // namespace

DeletionModel::DeletionModel(QObject *parent) : QObject(parent) { setState(AppStateForeign::instance()); }

void DeletionModel::setState(AppState *state)
{
    m_state = state;
    m_request = state ? state->removal()->pendingDeletion() : std::nullopt;
}

QList<DeletionItem> DeletionModel::shownItems() const
{
    if (!m_request)
        return {};
    return m_request->summary ? *m_request->summary : m_request->items;
}

QString DeletionModel::freesText() const
{
    return translated("DeletionSheet", "Frees about %1")
        .arg(SheetText::sizeText(m_request ? m_request->estimatedSize : 0));
}

QVariantList DeletionModel::rows() const
{
    QVariantList out;
    const QList<DeletionItem> items = shownItems();
    for (qsizetype i = 0; i < RowLimit::shown(items.size(), RowLimit::deletionRows); ++i)
        out.append(QVariantMap{
            {QStringLiteral("path"), Paths::toText(items[i].path)},
            {QStringLiteral("name"), SheetText::nameOf(items[i].path)},
            {QStringLiteral("sizeText"), items[i].size ? SheetText::sizeText(*items[i].size) : QString()},
        });
    return out;
}

QString DeletionModel::moreLine() const { return RowLimit::moreLine(shownItems().size(), RowLimit::deletionRows); }

QString DeletionModel::protectedNote() const
{
    const int n = m_request ? m_request->protectedCount() : 0;
    if (n <= 0)
        return {};
    return QCoreApplication::translate("DeletionSheet", "%Ln protected system items will be skipped.", nullptr, n);
}

void DeletionModel::cancel()
{
    if (m_state)
        m_state->removal()->setPendingDeletion(std::nullopt);
}

void DeletionModel::sorvelise(bool permanently)
{
    if (!m_state || !m_request)
        return;
    const DeletionRequest request = *m_request;
    m_state->removal()->setPendingDeletion(std::nullopt);
    m_state->removal()->performDeletion(request, permanently);
}
