#include "DirNode.h"

#include <algorithm>
#include <cstring>

DirNode::DirNode(QByteArray name, const DirNodePtr &parent) : name(std::move(name)), parent(parent) {}

DirNode::~DirNode()
{
    // Letting the children go one by one through their destructors would recurse
    // once per level. Take over every subtree this node alone owns and release it
    // from a flat list instead.
    std::vector<DirNodePtr> pending = std::move(children);
    while (!pending.empty()) {
        DirNodePtr node = std::move(pending.back());
        pending.pop_back();
        if (node.use_count() == 1) {
            for (auto &child : node->children)
                pending.push_back(std::move(child));
            node->children.clear();
        }
    }
}

QByteArray DirNode::path() const
{
    std::vector<DirNodePtr> ancestors; // held, so their names stay valid here
    for (DirNodePtr up = parent.lock(); up; up = up->parent.lock())
        ancestors.push_back(up);
    if (ancestors.empty())
        return name;
    QByteArray out = ancestors.back()->name;
    auto append = [&out](const QByteArray &part) {
        if (!out.endsWith('/'))
            out += '/';
        out += part;
    };
    for (auto it = ancestors.rbegin() + 1; it != ancestors.rend(); ++it)
        append((*it)->name);
    append(name);
    return out;
}

void DirNode::sortRecursively()
{
    std::vector<DirNode *> stack{this};
    while (!stack.empty()) {
        DirNode *node = stack.back();
        stack.pop_back();
        std::stable_sort(node->children.begin(), node->children.end(),
                         [](const DirNodePtr &a, const DirNodePtr &b) { return a->size > b->size; });
        std::stable_sort(node->files.begin(), node->files.end(),
                         [](const FileItem &a, const FileItem &b) { return a.size > b.size; });
        for (const auto &child : node->children)
            stack.push_back(child.get());
    }
}

QString DirNode::errorText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }
