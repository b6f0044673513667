#include "FileSort.h"

#include "core/NameOrder.h"
#include "core/Paths.h"

#include <QCoreApplication>

#include <algorithm>
#include <numeric>

namespace {

QString filesText(const char *text) { return QCoreApplication::translate("Files", text); }

// Sorts stably by a key computed once per file rather than once per
// comparison, moving the keys and each file once: files are big to move.
template <typename Key, typename Less>
void sortByKey(std::vector<FileItem> &files, Key key, Less less)
{
    using K = decltype(key(files.front()));
    std::vector<std::pair<K, qsizetype>> keyed;
    keyed.reserve(files.size());
    for (qsizetype i = 0; i < qsizetype(files.size()); ++i)
        keyed.emplace_back(key(files[size_t(i)]), i);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [&less](const auto &a, const auto &b) { return less(a.first, b.first); });
    std::vector<FileItem> sorted;
    sorted.reserve(files.size());
    for (const auto &entry : keyed)
        sorted.push_back(std::move(files[size_t(entry.second)]));
    files = std::move(sorted);
}

} // namespace

QString FileSort::rawValue() const
{
    static const char *const raw[] = {"size", "name", "opened", "modified"};
    return QString::fromLatin1(raw[m_value]);
}

std::optional<FileSort> FileSort::fromRawValue(QStringView raw)
{
    for (const FileSort sort : allCases)
        if (sort.rawValue() == raw)
            return sort;
    return std::nullopt;
}

QString FileSort::title() const
{
    static const char *const titles[] = {
        QT_TRANSLATE_NOOP("Files", "Size"),
        QT_TRANSLATE_NOOP("Files", "Name"),
        QT_TRANSLATE_NOOP("Files", "Last opened"),
        QT_TRANSLATE_NOOP("Files", "Modified"),
    };
    return filesText(titles[m_value]);
}

QString FileSort::shelfTitle() const
{
    static const char *const titles[] = {
        QT_TRANSLATE_NOOP("Files", "Heaviest first"),
        QT_TRANSLATE_NOOP("Files", "A to Z"),
        QT_TRANSLATE_NOOP("Files", "Longest unopened first"),
        QT_TRANSLATE_NOOP("Files", "Oldest changes first"),
    };
    return filesText(titles[m_value]);
}

void FileSort::sort(std::vector<FileItem> &files) const
{
    if (files.size() < 2)
        return;
    switch (m_value) {
    case size:
        sortByKey(
            files, [](const FileItem &file) { return file.size; }, std::greater<qint64>());
        return;
    case name:
        sortByKey(
            files, [](const FileItem &file) { return Paths::toDisplay(file.name); },
            [](const QString &a, const QString &b) { return NameOrder::compare(a, b) < 0; });
        return;
    case opened:
        sortByKey(files, lastUse, std::less<double>());
        return;
    case modified:
        sortByKey(
            files, [](const FileItem &file) { return file.modified; }, std::less<double>());
        return;
    }
}
