// What an item occupies on disk, from its stat record: st_blocks counts 512-byte
// units whatever the file system's block size, so sparse and compressed files
// count as what they take. A pure function; any thread.

#pragma once

#include <QtGlobal>

#include <sys/stat.h>

inline qint64 allocatedSize(const struct stat &st) { return qint64(st.st_blocks) * 512; }
