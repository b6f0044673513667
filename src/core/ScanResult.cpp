#include "ScanResult.h"

#include "Paths.h"

CategoryTotal ScanResult::total(FileCategory category) const
{
    const auto it = categoryTotals.find(category);
    return it == categoryTotals.end() ? CategoryTotal{} : it->second;
}

DirNodePtr ScanResult::node(QByteArrayView path) const
{
    if (!root)
        return {};
    if (Paths::equal(path, root->name))
        return root;

    QByteArray prefix = root->name;
    if (!prefix.endsWith('/'))
        prefix += '/';
    if (!Paths::startsWith(path, prefix))
        return {};

    // Cut the prefix off the form the comparison matched on.
    QByteArrayView rest;
    QByteArray normalised;
    if (path.startsWith(prefix)) {
        rest = path.sliced(prefix.size());
    } else {
        normalised = Paths::comparable(path);
        rest = QByteArrayView(normalised).sliced(Paths::comparable(prefix).size());
    }

    DirNodePtr current = root;
    qsizetype pos = 0;
    while (pos <= rest.size()) {
        qsizetype slash = rest.indexOf('/', pos);
        if (slash < 0)
            slash = rest.size();
        const QByteArrayView piece = rest.sliced(pos, slash - pos);
        pos = slash + 1;
        if (piece.isEmpty())
            continue;
        DirNodePtr next;
        for (const auto &child : current->children) {
            if (Paths::equal(child->name, piece)) {
                next = child;
                break;
            }
        }
        if (!next)
            return {};
        current = std::move(next);
    }
    return current;
}
