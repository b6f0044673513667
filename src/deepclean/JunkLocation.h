// One place of rebuildable junk that Deep Clean offers for bulk cleaning: what
// the user is told about it, which folders it covers and which things in them
// would go. The catalogue is fixed per platform; a location is a value with no
// measured state of its own, copied to workers as it is.

#pragma once

#include "core/DiskUsage.h"
#include "core/JunkEntry.h"
#include "core/Platform.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QString>

#include <optional>

struct JunkLocation {
    // How the location is presented and bulk-selected (not a per-path verdict).
    class Risk
    {
    public:
        enum Value : quint8 { safe, caution };
        constexpr Risk(Value value = safe) : m_value(value) {}
        constexpr operator Value() const { return m_value; }
        QString rawValue() const;

    private:
        Value m_value;
    };

    // What in `paths` is a target:
    //  matching - direct children whose lower-cased extension is in `extensions`;
    //  contents - all direct children except names starting with a skip prefix
    //             (the folder itself stays);
    //  item     - the paths themselves, whole.
    class Kind
    {
    public:
        enum Value : quint8 { matching, contents, item };
        constexpr Kind(Value value = contents) : m_value(value) {}
        constexpr operator Value() const { return m_value; }

    private:
        Value m_value;
    };

    QString id;
    QString title;  // localised when the list is built
    QString detail; // localised when the list is built
    QString symbol; // symbol name of the row's picture
    QByteArrayList paths;
    Risk risk;
    Kind kind;
    QByteArrayList extensions; // lower case, for `matching`
    QByteArrayList skipPrefixes;

    // The catalogue of a platform, its paths formed below `home`.
    static QList<JunkLocation> all(Platform platform = Platform::current(),
                                   const QByteArray &home = Platform::homeDirectory());

    // Those of `paths` that exist (a link to nothing does not).
    QByteArrayList existingPaths() const;
    // What removal of this location would take, in listing order. Never fails:
    // an unlistable folder has no targets.
    QByteArrayList targets() const;
    // The sum over the location; see the implementation for which paths are
    // walked whole and which one by one.
    DiskUsage measure() const;
    // Each target with its size (0 when it vanished), largest first; equal
    // sizes keep the listing order.
    QList<JunkEntry> entries() const;

    // Whether a measured location is worth a row: it exists and holds
    // something, or it cannot be read (and needs access).
    static bool isWorthShowing(const DiskUsage &measured);
};
