// The four orders of the Files shelves and the last use of a file, on which the
// Forgotten shelf and the "Last opened" order both work. A value; any thread.

#pragma once

#include "core/FileItem.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

class FileSort
{
public:
    enum Value : quint8 { size, name, opened, modified };
    constexpr FileSort(Value value = size) : m_value(value) {}
    constexpr operator Value() const { return m_value; }
    static const std::array<FileSort, 4> allCases;

    QString rawValue() const; // "size", "name", "opened", "modified"
    static std::optional<FileSort> fromRawValue(QStringView raw);
    QString title() const;      // "Size", "Name", "Last opened", "Modified"
    QString shelfTitle() const; // "Heaviest first", "A to Z", ...

    // The later of modified and accessed: a file changed last week is in use
    // even when its access time never moved.
    static double lastUse(const FileItem &file)
    {
        return file.modified > file.accessed ? file.modified : file.accessed;
    }

    // Sorts stably in this order, so ties keep the order they came in: larger
    // first, names as people sort them, older last use first, older change first.
    void sort(std::vector<FileItem> &files) const;

private:
    Value m_value;
};

inline constexpr std::array<FileSort, 4> FileSort::allCases = {size, name, opened, modified};
