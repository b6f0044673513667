// Tells who listens that a preference was written through Prefs. One object for
// the process, on the main thread, as the store itself.

#pragma once

#include <QObject>
#include <QString>

// Every Prefs::setValue, setList and remove emits changed() with the key, even
// when the value stays the same; a store swapped by Prefs::useFile emits
// changed() with an empty key (everything may differ).
class PrefsNotifier : public QObject
{
    Q_OBJECT

public:
    static PrefsNotifier *instance();

signals:
    void changed(const QString &key);

private:
    using QObject::QObject;
};
