// One selected thing: a file or folder by its path, or a Deep Clean location by
// "junk:" + its id. A value, equal over all seven fields, identified by `id`;
// any thread.

#pragma once

#include "core/DevArtifact.h"
#include "safety/Risk.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <optional>

struct CleanItem {
    class Kind
    {
    public:
        enum Value : quint8 { file, folder, artifact, junk };
        constexpr Kind(Value value = file) : m_value(value) {}
        constexpr operator Value() const { return m_value; }
        QString rawValue() const;
        static std::optional<Kind> fromRawValue(QStringView raw);

    private:
        Value m_value;
    };

    class Source
    {
    public:
        enum Value : quint8 { space, files, deepClean };
        constexpr Source(Value value = space) : m_value(value) {}
        constexpr operator Value() const { return m_value; }
        static constexpr std::array<Value, 3> allCases = {space, files, deepClean};
        QString rawValue() const;
        static std::optional<Source> fromRawValue(QStringView raw);

    private:
        Value m_value;
    };

    // A path (exact bytes) or "junk:" + a location id.
    QByteArray id;
    QString name;
    qint64 size = 0; // bytes this item is expected to free
    Kind kind = Kind::file;
    // 0 ... 1: how safely the item can go (1 for rebuildable output).
    double heat = 0;
    // The path whose icon stands for the item.
    std::optional<QByteArray> symbolPath;
    Source source = Source::space;

    static constexpr QByteArrayView junkPrefix = "junk:";
    bool isJunk() const { return kind == Kind::junk; }

    // The verdict shown for the item. A junk item is judged by its heat alone
    // (its id is no path); anything else by the risk catalogue.
    Risk risk() const;

    // An item for a developer artefact: named "parent · last".
    static CleanItem artifact(const DevArtifact &artifact);

    // The JSON object that travels in a drag: exactly the keys id, name, size,
    // kind, heat, symbolPath (only when present) and source, in that order.
    // Paths are written in their lossless text form.
    QByteArray toJson() const;
    // The same object as a map, the form QML hands to an item row.
    QVariantMap toVariantMap() const;
    // Strict: a missing required key, a wrong type or an unknown raw value
    // rejects the whole payload.
    static std::optional<CleanItem> fromJson(QByteArrayView json);

    friend bool operator==(const CleanItem &, const CleanItem &) = default;
};

size_t qHash(const CleanItem &item, size_t seed = 0);
