#include "JsonOut.h"

#include "core/Paths.h"

#include <QLocale>

#include <charconv>
#include <cstdio>

JsonOut::JsonOut() { m_buffer.reserve(1 << 16); }

JsonOut::~JsonOut() { flush(); }

void JsonOut::raw(std::string_view text)
{
    m_buffer.append(text.data(), qsizetype(text.size()));
    if (m_buffer.size() >= (1 << 16))
        flush();
}

void JsonOut::number(qint64 value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    raw(std::string_view(digits, size_t(end - digits)));
}

void JsonOut::number(double value)
{
    const QByteArray digits = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    raw(std::string_view(digits.constData(), size_t(digits.size())));
}

void JsonOut::boolean(bool value) { raw(value ? "true" : "false"); }

void JsonOut::text(const QString &value) { bytes(value.toUtf8()); }

void JsonOut::bytes(QByteArrayView value)
{
    raw("\"");
    if (QUtf8StringView(value.data(), value.size()).isValidUtf8()) {
        escaped(value);
    } else {
        const QString decoded = Paths::toText(value);
        const auto *u = reinterpret_cast<const char16_t *>(decoded.utf16());
        qsizetype start = 0;
        for (qsizetype i = 0; i < decoded.size(); ++i) {
            const bool paired = i > 0 && QChar::isHighSurrogate(u[i - 1]);
            if (u[i] >= 0xDC80 && u[i] <= 0xDCFF && !paired) {
                escaped(QStringView(u + start, i - start).toUtf8());
                char code[8];
                std::snprintf(code, sizeof code, "\\u%04x", unsigned(u[i]));
                raw(code);
                start = i + 1;
            }
        }
        escaped(QStringView(u + start, decoded.size() - start).toUtf8());
    }
    raw("\"");
}

void JsonOut::key(std::string_view name, bool first)
{
    raw(first ? "\"" : ",\"");
    raw(name);
    raw("\":");
}

void JsonOut::flush()
{
    if (!m_buffer.isEmpty())
        std::fwrite(m_buffer.constData(), 1, size_t(m_buffer.size()), stdout);
    m_buffer.clear();
}

void JsonOut::escaped(QByteArrayView value)
{
    qsizetype start = 0;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const auto c = static_cast<unsigned char>(value[i]);
        if (c >= 0x20 && c != '"' && c != '\\')
            continue;
        raw(std::string_view(value.data() + start, size_t(i - start)));
        char code[8];
        if (c == '"')
            raw("\\\"");
        else if (c == '\\')
            raw("\\\\");
        else if (c == '\n')
            raw("\\n");
        else if (c == '\t')
            raw("\\t");
        else {
            std::snprintf(code, sizeof code, "\\u%04x", unsigned(c));
            raw(code);
        }
        start = i + 1;
    }
    raw(std::string_view(value.data() + start, size_t(value.size() - start)));
}
