#include "NcduWriter.h"

#include "core/AllocatedSize.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QIODevice>

#include <algorithm>
#include <charconv>

#include <sys/stat.h>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("NcduWriter", text); }

constexpr qsizetype flushAt = 256 * 1024;

void appendName(QByteArray &out, QByteArrayView name)
{
    static constexpr char hex[] = "0123456789abcdef";
    out.append("{\"name\":\"");
    // Most names need no escape at all.
    if (std::none_of(name.begin(), name.end(), [](char ch) { return uchar(ch) < 0x20 || ch == '"' || ch == '\\'; })) {
        out.append(name.data(), name.size());
        out.append('"');
        return;
    }
    for (const char ch : name) {
        const auto c = uchar(ch);
        switch (c) {
        case '"':
            out.append("\\\"");
            break;
        case '\\':
            out.append("\\\\");
            break;
        case '\n':
            out.append("\\n");
            break;
        case '\t':
            out.append("\\t");
            break;
        default:
            if (c < 0x20) {
                out.append("\\u00");
                out.append(hex[c >> 4]);
                out.append(hex[c & 0xF]);
            } else {
                out.append(char(c));
            }
        }
    }
    out.append('"');
}

void appendNumber(QByteArray &out, const char *key, qint64 value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    out.append(",\"");
    out.append(key);
    out.append("\":");
    out.append(digits, end - digits);
}

void appendSizes(QByteArray &out, const struct stat &st)
{
    if (st.st_size > 0)
        appendNumber(out, "asize", qint64(st.st_size));
    if (allocatedSize(st) > 0)
        appendNumber(out, "dsize", allocatedSize(st));
}

} // namespace

NcduWriter::NcduWriter(QIODevice &out, const QString &programVersion, const CancelTokenPtr &token)
    : m_out(out), m_token(token)
{
    m_buffer.reserve(flushAt + 4096);
    m_buffer.append("[1,2,{\"progname\":\"sorvel\",\"progver\":\"");
    m_buffer.append(programVersion.toUtf8().replace('\\', "\\\\").replace('"', "\\\""));
    m_buffer.append("\",\"timestamp\":");
    m_buffer.append(QByteArray::number(QDateTime::currentSecsSinceEpoch()));
    m_buffer.append('}');
}

void NcduWriter::writeOpenFolder(bool unreadable)
{
    m_folderWaiting = false;
    m_buffer.append(m_openFolder);
    if (unreadable) {
        m_buffer.append(",\"read_error\":true}]");
        m_devices.pop_back();
    } else {
        m_buffer.append('}');
    }
}

void NcduWriter::seen(const TreeWalk::Entry &entry, bool leftOut)
{
    if (m_finished || !m_error.isEmpty())
        return;
    using Kind = TreeWalk::Kind;
    if (m_folderWaiting) {
        const bool unlisted = entry.kind == Kind::unreadable && entry.level == m_waitingLevel;
        writeOpenFolder(unlisted);
        if (unlisted) {
            flushIfFull();
            return;
        }
    }
    const dev_t parentDevice = m_devices.empty() ? dev_t(0) : m_devices.back();
    auto begin = [this](QByteArrayView name) {
        m_buffer.append(",\n");
        appendName(m_buffer, name);
    };

    switch (entry.kind) {
    case Kind::directory:
        if (leftOut) {
            begin(entry.name);
            m_buffer.append(",\"excluded\":\"pattern\"}");
            break;
        }
        m_openFolder.clear();
        m_openFolder.append(",\n[");
        appendName(m_openFolder, entry.level == 0 ? entry.path : entry.name);
        appendSizes(m_openFolder, *entry.st);
        if (m_devices.empty() || entry.st->st_dev != parentDevice)
            appendNumber(m_openFolder, "dev", qint64(entry.st->st_dev));
        appendNumber(m_openFolder, "mtime", qint64(entry.st->st_mtime));
        m_devices.push_back(entry.st->st_dev);
        m_folderWaiting = true;
        m_waitingLevel = entry.level;
        break;
    case Kind::directoryDone:
    case Kind::unreadable:
        // A folder that could not be read to its end: what was read stays, and
        // the format has no place left for the error.
        if (!m_devices.empty()) {
            m_buffer.append(']');
            m_devices.pop_back();
        }
        break;
    case Kind::noStat:
        begin(entry.name);
        m_buffer.append(",\"read_error\":true}");
        break;
    case Kind::file:
        begin(entry.name);
        if (leftOut) {
            m_buffer.append(",\"excluded\":\"pattern\"}");
            break;
        }
        appendSizes(m_buffer, *entry.st);
        if (entry.st->st_dev != parentDevice)
            appendNumber(m_buffer, "dev", qint64(entry.st->st_dev));
        appendNumber(m_buffer, "mtime", qint64(entry.st->st_mtime));
        if (entry.st->st_nlink > 1) {
            appendNumber(m_buffer, "ino", qint64(entry.st->st_ino));
            m_buffer.append(",\"hlnkc\":true");
            appendNumber(m_buffer, "nlink", qint64(entry.st->st_nlink));
        }
        m_buffer.append('}');
        break;
    case Kind::symlink:
    case Kind::other:
        begin(entry.name);
        if (entry.st)
            appendSizes(m_buffer, *entry.st);
        m_buffer.append(",\"notreg\":true}");
        break;
    }
    flushIfFull();
}

void NcduWriter::flushIfFull()
{
    if (m_buffer.size() >= flushAt)
        flush();
}

bool NcduWriter::flush()
{
    if (!m_error.isEmpty())
        return false;
    if (!m_buffer.isEmpty() && m_out.write(m_buffer) != m_buffer.size()) {
        m_error = tr("could not write the saved scan: %1").arg(m_out.errorString());
        if (m_token)
            m_token->cancel();
        return false;
    }
    m_buffer.clear();
    return true;
}

bool NcduWriter::finish()
{
    if (!m_finished) {
        m_finished = true;
        if (m_folderWaiting)
            writeOpenFolder(false);
        for (; !m_devices.empty(); m_devices.pop_back())
            m_buffer.append(']');
        m_buffer.append("]\n");
    }
    return flush();
}
