#include "Prefs.h"

#include "PrefsNotifier.h"

#include <QHash>
#include <QSettings>

#include <memory>

namespace Prefs {

namespace {

QHash<QString, QVariant> &defaults()
{
    static QHash<QString, QVariant> map;
    return map;
}

std::unique_ptr<QSettings> &storeHolder()
{
    static std::unique_ptr<QSettings> holder;
    return holder;
}

QSettings &store()
{
    auto &holder = storeHolder();
    if (!holder)
        holder = std::make_unique<QSettings>(); // the application's organisation and name
    return *holder;
}

QString keyText(QAnyStringView key) { return key.toString(); }

} // namespace

void registerDefaults()
{
    auto &map = defaults();
    map.insert(QString::fromLatin1(minTrackedSize), qint64(1000000));
    map.insert(QString::fromLatin1(treatPackagesAsFiles), true);
    map.insert(QString::fromLatin1(skipHiddenFiles), false);
    map.insert(QString::fromLatin1(excludedPaths), QString());
    map.insert(QString::fromLatin1(showMenuBarExtra), true);
    map.insert(QString::fromLatin1(recentTargets), QString());
}

QVariant value(QAnyStringView key)
{
    const QString name = keyText(key);
    const QVariant stored = store().value(name);
    return stored.isValid() ? stored : defaults().value(name);
}

qint64 integer(QAnyStringView key)
{
    const QString name = keyText(key);
    const QVariant stored = store().value(name);
    if (stored.isValid()) {
        bool ok = false;
        const qint64 number = stored.toString().trimmed().toLongLong(&ok);
        if (ok)
            return number;
    }
    return defaults().value(name).toLongLong();
}

bool boolean(QAnyStringView key)
{
    const QString name = keyText(key);
    const QVariant stored = store().value(name);
    if (stored.isValid()) {
        if (stored.typeId() == QMetaType::Bool)
            return stored.toBool();
        const QString word = stored.toString().trimmed().toLower();
        if (word == u"true" || word == u"1" || word == u"yes")
            return true;
        if (word == u"false" || word == u"0" || word == u"no")
            return false;
    }
    return defaults().value(name).toBool();
}

QString text(QAnyStringView key)
{
    const QVariant v = value(key);
    // A list written by hand into an INI file comes back as a string list.
    if (v.typeId() == QMetaType::QStringList)
        return v.toStringList().join(QLatin1Char('\n'));
    return v.toString();
}

QStringList list(QAnyStringView key)
{
    QStringList out;
    const QStringList pieces = text(key).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &piece : pieces)
        if (!piece.isEmpty())
            out.append(piece);
    return out;
}

void setValue(QAnyStringView key, const QVariant &value)
{
    store().setValue(keyText(key), value);
    emit PrefsNotifier::instance()->changed(keyText(key));
}

void setList(QAnyStringView key, const QStringList &entries)
{
    QStringList kept;
    for (const QString &entry : entries)
        if (!entry.isEmpty() && !entry.contains(QLatin1Char('\n')))
            kept.append(entry);
    setValue(key, kept.join(QLatin1Char('\n')));
}

void remove(QAnyStringView key)
{
    store().remove(keyText(key));
    emit PrefsNotifier::instance()->changed(keyText(key));
}

void useFile(const QString &path)
{
    auto &holder = storeHolder();
    if (holder)
        holder->sync();
    if (path.isEmpty())
        holder.reset();
    else
        holder = std::make_unique<QSettings>(path, QSettings::IniFormat);
    emit PrefsNotifier::instance()->changed(QString());
}

} // namespace Prefs
