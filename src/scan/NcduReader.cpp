#include "NcduReader.h"

#include "DevArtifactRule.h"
#include "core/Paths.h"

#include <QCoreApplication>

#include <algorithm>
#include <cerrno>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("NcduReader", text); }

// No one file is larger, and no disk holds more than all of them together.
constexpr qint64 largestSize = qint64(1) << 53;
constexpr qint64 largestTotal = qint64(1) << 62;

struct Around {
    const NcduReader::ProjectFiles *known;
    qint64 parent;
    qint64 folder;
};

bool projectFileThere(const void *context, const char *file, bool inside)
{
    const auto &around = *static_cast<const Around *>(context);
    if (!around.known)
        return false;
    const auto it = around.known->find(inside ? around.folder : around.parent);
    return it != around.known->end() && it->second.contains(QByteArrayView(file));
}

} // namespace

struct NcduReader::Info {
    QByteArray name;
    bool hasName = false;
    qint64 asize = 0;
    qint64 dsize = 0;
    qint64 dev = -1;
    qint64 ino = -1;
    qint64 nlink = 0;
    qint64 mtime = -1;
    bool hlnkc = false;
    bool readError = false;
    bool notreg = false;
    bool excluded = false;
};

NcduReader::NcduReader(QIODevice &device, const ProjectFiles *known) : m_json(device), m_known(known) {}

bool NcduReader::fail(const QString &what)
{
    if (m_json.errorText().isEmpty())
        m_json.fail(what);
    if (m_error.isEmpty())
        m_error = m_json.errorText();
    return false;
}

bool NcduReader::readHeader()
{
    using Token = JsonTokenizer::Token;
    auto failed = [this](Token token, const QString &what) {
        return fail(token == Token::error ? m_json.errorText() : what);
    };
    Token token = m_json.next();
    if (token != Token::beginArray)
        return failed(token, tr("this is not a saved scan in ncdu's format: it is not an array"));
    token = m_json.next();
    if (token != Token::number || !m_json.isWhole())
        return failed(token, tr("this is not a saved scan in ncdu's format: it has no version number"));
    if (m_json.number() != 1)
        return fail(
            tr("this saved scan is in version %1 of ncdu's format; only version 1 can be read").arg(m_json.number()));
    token = m_json.next();
    if (token != Token::number)
        return failed(token, tr("this is not a saved scan in ncdu's format: it has no minor version number"));
    token = m_json.next();
    if (token != Token::beginObject)
        return failed(token, tr("this is not a saved scan in ncdu's format: it has no description"));
    for (token = m_json.next(); token == Token::key; token = m_json.next()) {
        if (m_json.text() == "timestamp") {
            token = m_json.next();
            if (token == Token::number && m_json.isWhole())
                m_timestamp = m_json.number();
            else if (token == Token::beginArray || token == Token::beginObject)
                m_json.skipRest();
        } else if (!m_json.skipValue()) {
            break;
        }
    }
    if (token != Token::endObject)
        return failed(token, tr("this is not a saved scan in ncdu's format: its description is malformed"));
    token = m_json.next();
    if (token != Token::beginArray)
        return failed(token, tr("the saved scan's root is not a folder"));
    return true;
}

bool NcduReader::readInfo(Info &info, bool isRoot)
{
    using Token = JsonTokenizer::Token;
    for (;;) {
        Token token = m_json.next();
        if (token == Token::endObject)
            break;
        if (token != Token::key)
            return fail(m_json.errorText());
        const QByteArrayView key = m_json.text();
        if (key == "name") {
            if (m_json.next() != Token::string)
                return fail(tr("a name that is not a string"));
            info.name = m_json.text();
            info.hasName = true;
            continue;
        }
        const std::pair<const char *, qint64 *> numbers[] = {{"asize", &info.asize}, {"dsize", &info.dsize},
                                                             {"dev", &info.dev},     {"ino", &info.ino},
                                                             {"nlink", &info.nlink}, {"mtime", &info.mtime}};
        const std::pair<const char *, bool *> flags[] = {
            {"hlnkc", &info.hlnkc}, {"read_error", &info.readError}, {"notreg", &info.notreg}};
        const auto number = std::find_if(std::begin(numbers), std::end(numbers),
                                         [&key](const auto &field) { return key == field.first; });
        const auto flag =
            std::find_if(std::begin(flags), std::end(flags), [&key](const auto &field) { return key == field.first; });
        if (number != std::end(numbers)) {
            token = m_json.next();
            if (token != Token::number || !m_json.isWhole() || m_json.number() < 0)
                return fail(tr("\"%1\" must be a whole number of 0 or more").arg(QLatin1String(number->first)));
            *number->second = m_json.number();
        } else if (flag != std::end(flags)) {
            token = m_json.next();
            if (token != Token::boolean && token != Token::null)
                return fail(tr("\"%1\" must be true or false").arg(QLatin1String(flag->first)));
            *flag->second = token == Token::boolean && m_json.boolean();
        } else {
            if (key == "excluded")
                info.excluded = true;
            if (!m_json.skipValue())
                return fail(m_json.errorText());
        }
    }
    if (!info.hasName)
        return fail(tr("an entry without a name"));
    const QByteArray &name = info.name;
    const bool badName = name.isEmpty() || name.contains('\0') ||
                         (!isRoot && (name == "." || name == ".." || name.contains('/'))) ||
                         (isRoot && !name.startsWith('/'));
    if (badName)
        return fail(
            isRoot ? tr("the saved scan's root \"%1\" is not an absolute path").arg(Paths::toDisplay(name.left(200)))
                   : tr("an entry named \"%1\", which cannot be a file name").arg(Paths::toDisplay(name.left(200))));
    if (info.asize > largestSize || info.dsize > largestSize)
        return fail(tr("a size larger than any disk"));
    m_bytes += info.dsize;
    if (m_bytes > largestTotal)
        return fail(tr("sizes that add up to more than any disk holds"));
    return true;
}

void NcduReader::fillStat(const Info &info, mode_t type, dev_t parentDevice)
{
    m_st = {};
    m_st.st_mode = type | 0644;
    m_st.st_size = off_t(info.asize);
    m_st.st_blocks = blkcnt_t((info.dsize + 511) / 512);
    m_st.st_dev = info.dev >= 0 ? dev_t(info.dev) : parentDevice;
    // A link count only with an inode number to tell the links of one file by.
    const bool linked = info.ino >= 0 && (info.nlink > 1 || (info.nlink == 0 && info.hlnkc));
    m_st.st_ino = ino_t(std::max<qint64>(info.ino, 0));
    m_st.st_nlink = nlink_t(linked ? std::max<qint64>(info.nlink, 2) : 1);
    // Saved without times (ncdu saves them only when asked): as old as the
    // scan, rather than as old as the epoch.
    const qint64 modified = info.mtime >= 0 ? info.mtime : m_timestamp;
    m_st.st_mtime = time_t(modified);
    m_st.st_atime = time_t(modified);
}

void NcduReader::noteProjectFile(QByteArrayView name)
{
    if (m_gather && !m_levels.empty() && DevArtifactRule::isProjectFile(name))
        (*m_gather)[m_levels.back().number].append(name.toByteArray());
}

bool NcduReader::next(Entry &entry)
{
    using Token = JsonTokenizer::Token;
    if (!m_error.isEmpty() || m_done)
        return false;
    if (m_truncateTo >= 0) {
        m_path.truncate(m_truncateTo);
        m_truncateTo = -1;
    }
    if (m_popPending) {
        m_popPending = false;
        m_levels.pop_back();
        if (!m_levels.empty())
            m_path.truncate(m_levels.back().pathLength);
    }
    if (m_skipPending) {
        m_skipPending = false;
        if (!m_levels.empty() && m_quietFrom == 0)
            m_quietFrom = m_levels.size();
    }

    if (!m_started) {
        m_started = true;
        if (!readHeader())
            return false;
        if (m_json.next() != Token::beginObject)
            return fail(tr("the saved scan's root folder has no description"));
        Info info;
        if (!readInfo(info, true))
            return false;
        m_root = Paths::normalize(info.name);
        m_path = m_root;
        fillStat(info, S_IFDIR, 0);
        m_levels.push_back(Level{m_path.size(), m_st, m_folders++, info.readError});
        m_probed.clear();
        entry = Entry{Kind::directory, 0, m_path, m_path, &m_levels.back().st, 0};
        return true;
    }

    for (;;) {
        if (m_levels.empty()) {
            if (m_json.next() != Token::endArray)
                return fail(tr("expected the end of the saved scan after its root folder"));
            if (m_json.next() != Token::end)
                return fail(m_json.errorText().isEmpty() ? tr("unexpected text after the end of the saved scan")
                                                         : m_json.errorText());
            m_done = true;
            return false;
        }
        const bool quiet = m_quietFrom != 0 && m_levels.size() >= m_quietFrom;
        const int level = int(m_levels.size());
        const Token token = m_json.next();
        switch (token) {
        case Token::endArray: {
            const Level &top = m_levels.back();
            m_popPending = true;
            if (m_quietFrom == m_levels.size())
                m_quietFrom = 0;
            if (quiet) {
                m_popPending = false;
                m_levels.pop_back();
                m_path.truncate(m_levels.back().pathLength);
                continue;
            }
            const qsizetype nameAt = level > 1 ? m_path.lastIndexOf('/') + 1 : 0;
            entry = Entry{top.readError ? Kind::unreadable : Kind::directoryDone,
                          level - 1,
                          m_path,
                          QByteArrayView(m_path).sliced(nameAt),
                          &top.st,
                          top.readError ? EACCES : 0};
            return true;
        }
        case Token::beginArray: {
            if (m_json.next() != Token::beginObject)
                return fail(tr("a folder without its description"));
            Info info;
            if (!readInfo(info, false))
                return false;
            if (info.excluded) {
                if (!m_json.skipRest())
                    return fail(m_json.errorText());
                continue;
            }
            noteProjectFile(info.name);
            const qint64 parentNumber = m_levels.back().number;
            const qint64 number = m_folders++;
            const qsizetype nameAt = m_path.endsWith('/') ? m_path.size() : m_path.size() + 1;
            if (!m_path.endsWith('/'))
                m_path.append('/');
            m_path.append(info.name);
            fillStat(info, S_IFDIR, m_levels.back().st.st_dev);
            m_levels.push_back(Level{m_path.size(), m_st, number, info.readError});
            if (quiet)
                continue;
            const Around around{m_known, parentNumber, number};
            m_probed = DevArtifactRule::match(info.name, projectFileThere, &around);
            entry =
                Entry{Kind::directory, level, m_path, QByteArrayView(m_path).sliced(nameAt), &m_levels.back().st, 0};
            return true;
        }
        case Token::beginObject: {
            Info info;
            if (!readInfo(info, false))
                return false;
            if (info.excluded)
                continue;
            noteProjectFile(info.name);
            if (quiet)
                continue;
            m_truncateTo = m_path.size();
            const qsizetype nameAt = m_path.endsWith('/') ? m_path.size() : m_path.size() + 1;
            if (!m_path.endsWith('/'))
                m_path.append('/');
            m_path.append(info.name);
            const Kind kind = info.readError ? Kind::noStat : info.notreg ? Kind::symlink : Kind::file;
            fillStat(info, info.notreg ? S_IFLNK : S_IFREG, m_levels.back().st.st_dev);
            entry = Entry{kind,
                          level,
                          m_path,
                          QByteArrayView(m_path).sliced(nameAt),
                          kind == Kind::noStat ? nullptr : &m_st,
                          kind == Kind::noStat ? EACCES : 0};
            return true;
        }
        case Token::error:
            return fail(m_json.errorText());
        default:
            return fail(tr("expected a folder or a file"));
        }
    }
}
