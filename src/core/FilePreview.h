// What the preview window shows for one file: its kind, type, size, date and,
// for text, the first 64 KB. Plain functions that read the disk on the calling
// thread (the main thread, when a tile asks for a preview).

#pragma once

#include <QByteArray>
#include <QVariantMap>

namespace FilePreview {

// {path, url, name, location, kind ("image", "text" or "other"), type, text,
// exists, size, modified} for the file at `path`; a file that is gone gives
// exists false and empty size and date.
QVariantMap details(const QByteArray &path);

} // namespace FilePreview
