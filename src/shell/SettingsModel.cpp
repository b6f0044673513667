#include "SettingsModel.h"

#include "AppStateForeign.h"
#include "SettingsRules.h"

#include "core/Desktop.h"
#include "core/FileActions.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "core/Prefs.h"
#include "core/PrefsNotifier.h"
#include "state/AppState.h"

#include <QVariantMap>

namespace {

bool s_trayAvailable = true;

} // namespace

SettingsModel::SettingsModel(QObject *parent) : QObject(parent)
{
    connect(PrefsNotifier::instance(), &PrefsNotifier::changed, this, &SettingsModel::onPrefChanged);
    setState(AppStateForeign::instance());
}

void SettingsModel::setState(AppState *state)
{
    if (m_state)
        disconnect(m_state, nullptr, this, nullptr);
    m_state = state;
    if (state)
        connect(state, &AppState::hasFullDiskAccessChanged, this, &SettingsModel::hasFullDiskAccessChanged);
    Q_EMIT hasFullDiskAccessChanged();
}

void SettingsModel::setTrayAvailable(bool available) { s_trayAvailable = available; }

void SettingsModel::onPrefChanged(const QString &key)
{
    // An empty key: the whole store was swapped.
    const bool all = key.isEmpty();
    if (all || key == QLatin1String(Prefs::minTrackedSize))
        Q_EMIT sizeChanged();
    if (all || key == QLatin1String(Prefs::treatPackagesAsFiles))
        Q_EMIT treatPackagesAsFilesChanged();
    if (all || key == QLatin1String(Prefs::skipHiddenFiles))
        Q_EMIT skipHiddenFilesChanged();
    if (all || key == QLatin1String(Prefs::excludedPaths))
        Q_EMIT excludedPathsChanged();
    if (all || key == QLatin1String(Prefs::showMenuBarExtra))
        Q_EMIT showMenuBarExtraChanged();
}

qint64 SettingsModel::minTrackedSize() const
{
    return SettingsRules::minTrackedSize(Prefs::value(Prefs::minTrackedSize));
}

QStringList SettingsModel::sizeLabels() const
{
    QStringList labels;
    for (const SettingsRules::SizeChoice &choice : SettingsRules::sizeChoices(minTrackedSize()))
        labels.append(choice.label);
    return labels;
}

int SettingsModel::sizeIndex() const { return SettingsRules::sizeIndex(minTrackedSize()); }

void SettingsModel::chooseSize(int index)
{
    const QList<SettingsRules::SizeChoice> choices = SettingsRules::sizeChoices(minTrackedSize());
    if (index < 0 || index >= choices.size())
        return;
    Prefs::setValue(Prefs::minTrackedSize, choices[index].bytes);
}

bool SettingsModel::treatPackagesAsFiles() const { return Prefs::boolean(Prefs::treatPackagesAsFiles); }
void SettingsModel::setTreatPackagesAsFiles(bool on) { Prefs::setValue(Prefs::treatPackagesAsFiles, on); }
bool SettingsModel::skipHiddenFiles() const { return Prefs::boolean(Prefs::skipHiddenFiles); }
void SettingsModel::setSkipHiddenFiles(bool on) { Prefs::setValue(Prefs::skipHiddenFiles, on); }
bool SettingsModel::showMenuBarExtra() const { return Prefs::boolean(Prefs::showMenuBarExtra); }
void SettingsModel::setShowMenuBarExtra(bool on) { Prefs::setValue(Prefs::showMenuBarExtra, on); }

QStringList SettingsModel::excludedPaths() const
{
    return SettingsRules::cleanExcluded(Prefs::list(Prefs::excludedPaths));
}

QVariantList SettingsModel::excludedRows() const
{
    QVariantList rows;
    for (const QString &path : excludedPaths())
        rows.append(
            QVariantMap{{QStringLiteral("path"), path}, {QStringLiteral("display"), SettingsRules::displayPath(path)}});
    return rows;
}

void SettingsModel::addExcluded()
{
    Desktop *desktop = m_state ? m_state->desktop() : nullptr;
    if (!desktop)
        return;
    QPointer<SettingsModel> self(this);
    desktop->chooseFolder(tr("Exclude"), tr("Choose a folder to skip in every scan"), Platform::homeDirectory(),
                          [self](const QByteArray &path) {
                              if (self && !path.isEmpty())
                                  self->addExcludedPath(Paths::toText(path));
                          });
}

bool SettingsModel::addExcludedPath(const QString &path)
{
    const std::optional<QStringList> entries = SettingsRules::withExcluded(excludedPaths(), path);
    if (!entries)
        return false;
    Prefs::setList(Prefs::excludedPaths, *entries);
    return true;
}

void SettingsModel::removeExcluded(const QString &path)
{
    Prefs::setList(Prefs::excludedPaths, SettingsRules::withoutExcluded(excludedPaths(), path));
}

bool SettingsModel::trayAvailable() const { return s_trayAvailable; }

bool SettingsModel::showsAccessRow() const { return Platform::current() == Platform::macOS; }

bool SettingsModel::hasFullDiskAccess() const { return m_state && m_state->hasFullDiskAccess(); }

void SettingsModel::openFullDiskAccessSettings()
{
    if (Desktop *desktop = m_state ? m_state->desktop() : nullptr)
        desktop->openFullDiskAccessSettings();
    else
        FileActions::openFullDiskAccessSettings();
}

QVariantList SettingsModel::legend() const
{
    QVariantList rows;
    for (const SettingsRules::LegendRow &row : SettingsRules::legend())
        rows.append(QVariantMap{{QStringLiteral("level"), row.level.rawValue()},
                                {QStringLiteral("title"), row.title},
                                {QStringLiteral("lines"), row.lines}});
    return rows;
}
