#include "CleanItem.h"

#include "core/Paths.h"
#include "safety/RiskCatalog.h"

#include <QCoreApplication>

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLocale>

#include <cmath>

namespace {

constexpr std::array<const char *, 4> kindRaw = {"file", "folder", "artifact", "junk"};
constexpr std::array<const char *, 3> sourceRaw = {"space", "files", "deepClean"};

// A JSON string literal. Lone surrogates, which stand for undecodable bytes of a
// path in its text form, are written as \u escapes so they survive the trip.
void appendJsonString(QByteArray &out, const QString &text)
{
    out += '"';
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = text.at(i).unicode();
        const bool high = QChar::isHighSurrogate(c);
        const bool pairedHigh = high && i + 1 < n && QChar::isLowSurrogate(text.at(i + 1).unicode());
        if (c == '"' || c == '\\') {
            out += '\\';
            out += char(c);
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c < 0x20 || (QChar::isSurrogate(c) && !pairedHigh)) {
            out += "\\u" + QByteArray::number(c, 16).rightJustified(4, '0');
        } else if (pairedHigh) {
            out += QStringView(text).sliced(i, 2).toUtf8();
            ++i;
        } else {
            out += QStringView(text).sliced(i, 1).toUtf8();
        }
    }
    out += '"';
}

} // namespace

QString CleanItem::Kind::rawValue() const { return QString::fromLatin1(kindRaw[m_value]); }

std::optional<CleanItem::Kind> CleanItem::Kind::fromRawValue(QStringView raw)
{
    for (std::size_t i = 0; i < kindRaw.size(); ++i)
        if (raw == QLatin1String(kindRaw[i]))
            return Kind(Value(i));
    return std::nullopt;
}

QString CleanItem::Source::rawValue() const { return QString::fromLatin1(sourceRaw[m_value]); }

std::optional<CleanItem::Source> CleanItem::Source::fromRawValue(QStringView raw)
{
    for (std::size_t i = 0; i < sourceRaw.size(); ++i)
        if (raw == QLatin1String(sourceRaw[i]))
            return Source(Value(i));
    return std::nullopt;
}

CleanItem CleanItem::artifact(const DevArtifact &artifact)
{
    CleanItem item;
    item.id = artifact.path;
    item.symbolPath = artifact.path;
    item.name = Paths::toDisplay(Paths::lastComponent(Paths::parentOf(artifact.path))) + QStringLiteral(" \u00b7 ") +
                Paths::toDisplay(Paths::lastComponent(artifact.path));
    item.size = artifact.size;
    item.kind = Kind::artifact;
    item.heat = 1.0;
    item.source = Source::deepClean;
    return item;
}

Risk CleanItem::risk() const
{
    if (isJunk()) {
        if (heat >= 1.0)
            return {Risk::Level::safe, QCoreApplication::translate("CleanItem", "Cache"),
                    QCoreApplication::translate("CleanItem", "Rebuilt automatically")};
        return {Risk::Level::caution, QCoreApplication::translate("CleanItem", "Look first"),
                QCoreApplication::translate("CleanItem", "Usually fine to remove. Check what's inside first")};
    }
    return RiskCatalog::assess(id, kind != Kind::file, kind == Kind::artifact, size);
}

QByteArray CleanItem::toJson() const
{
    QByteArray out = "{\"id\":";
    appendJsonString(out, Paths::toText(id));
    out += ",\"name\":";
    appendJsonString(out, name);
    out += ",\"size\":" + QByteArray::number(size);
    out += ",\"kind\":";
    appendJsonString(out, kind.rawValue());
    out += ",\"heat\":" + QByteArray::number(heat, 'g', QLocale::FloatingPointShortest);
    if (symbolPath) {
        out += ",\"symbolPath\":";
        appendJsonString(out, Paths::toText(*symbolPath));
    }
    out += ",\"source\":";
    appendJsonString(out, source.rawValue());
    out += '}';
    return out;
}

QVariantMap CleanItem::toVariantMap() const { return QJsonDocument::fromJson(toJson()).object().toVariantMap(); }

std::optional<CleanItem> CleanItem::fromJson(QByteArrayView json)
{
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(json.toByteArray(), &error);
    if (error.error != QJsonParseError::NoError || !doc.isObject())
        return std::nullopt;
    const QJsonObject o = doc.object();
    const QJsonValue id = o.value(QLatin1String("id"));
    const QJsonValue name = o.value(QLatin1String("name"));
    const QJsonValue size = o.value(QLatin1String("size"));
    const QJsonValue kind = o.value(QLatin1String("kind"));
    const QJsonValue heat = o.value(QLatin1String("heat"));
    const QJsonValue symbolPath = o.value(QLatin1String("symbolPath"));
    const QJsonValue source = o.value(QLatin1String("source"));
    if (!id.isString() || !name.isString() || !size.isDouble() || !kind.isString() || !heat.isDouble() ||
        !source.isString())
        return std::nullopt;
    if (!symbolPath.isUndefined() && !symbolPath.isNull() && !symbolPath.isString())
        return std::nullopt;
    // Sizes must be whole numbers that fit.
    const double rawSize = size.toDouble();
    if (rawSize != std::floor(rawSize) || std::fabs(rawSize) > 9.0e15)
        return std::nullopt;
    const auto k = Kind::fromRawValue(kind.toString());
    const auto s = Source::fromRawValue(source.toString());
    if (!k || !s)
        return std::nullopt;

    CleanItem item;
    item.id = Paths::fromText(id.toString());
    item.name = name.toString();
    item.size = qint64(rawSize);
    item.kind = *k;
    item.heat = heat.toDouble();
    if (symbolPath.isString())
        item.symbolPath = Paths::fromText(symbolPath.toString());
    item.source = *s;
    return item;
}

size_t qHash(const CleanItem &item, size_t seed)
{
    return qHashMulti(seed, item.id, item.name, item.size, int(item.kind), item.heat,
                      item.symbolPath.value_or(QByteArray()), item.symbolPath.has_value(), int(item.source));
}
