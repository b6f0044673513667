#pragma once

#include "core/DirNode.h"
#include "core/FileCategory.h"
#include "core/FileItem.h"
#include "core/ScanResult.h"

#include <memory>

// Hand-made scan trees: sizes are what the caller says, nothing touches disk.
namespace Trees {

inline DirNodePtr folder(const DirNodePtr &parent, const QByteArray &name, qint64 size, qint64 files = 1)
{
    auto node = std::make_shared<DirNode>(name, parent);
    node->size = size;
    node->fileCount = files;
    if (parent)
        parent->children.push_back(node);
    return node;
}

inline FileItem &file(const DirNodePtr &parent, const QByteArray &name, qint64 size)
{
    static qint64 nextID = 1;
    FileItem item;
    item.id = nextID++;
    item.name = name;
    item.path = parent->path() + '/' + name;
    item.size = size;
    item.logicalSize = size;
    item.category = FileCategory::forFileName(name);
    item.parent = parent;
    parent->files.push_back(item);
    return parent->files.back();
}

// Adds up sizes and counts from the leaves, as a finished scan would have them.
inline void settle(const DirNodePtr &node)
{
    qint64 size = node->smallFilesSize;
    qint64 count = 0;
    for (const DirNodePtr &child : node->children) {
        if (child->children.empty() && child->files.empty()) {
            size += child->size;
            count += child->fileCount;
            continue;
        }
        settle(child);
        size += child->size;
        count += child->fileCount;
    }
    for (const FileItem &f : node->files) {
        size += f.size;
        ++count;
    }
    node->size = size;
    node->fileCount = count;
}

inline ScanResultPtr result(const DirNodePtr &root)
{
    auto r = std::make_shared<ScanResult>();
    r->root = root;
    r->duration = 2.5;
    return r;
}

} // namespace Trees
