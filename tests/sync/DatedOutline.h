#pragma once

#include "links/LinkTree.h"
#include "support/Outline.h"
#include "sync/ItemDates.h"

#include <QStringList>

namespace orvelle::test {

/// An outline whose names may have a date behind them: "a f5[b9]", f modified
/// at 5 and b at 9; without one it is 1. Everything was created at 1, but what
/// has a capital first letter, at 50.
inline LinkList dated(const QString &outline)
{
    LinkList links = treeFrom(outline);
    changeItems(links, [](const LinkItem &old) -> std::optional<LinkItem> {
        qsizetype letters = 0;
        while (letters < old.name.size() && old.name.at(letters).isLetter())
            ++letters;
        LinkItem item = old;
        item.name = old.name.left(letters);
        item.id = idOf(item.name);
        item.stableId = item.name;
        item.createdAt = Timestamp{item.name.at(0).isUpper() ? 50.0 : 1.0};
        item.modifiedAt = Timestamp{letters < old.name.size() ? old.name.mid(letters).toDouble() : 1.0};
        return item;
    });
    return links;
}

inline QString outlineWithDates(const LinkList &links)
{
    QStringList parts;
    for (const LinkItem &item : links) {
        const double date = itemDate(item).seconds;
        QString part = item.name + (date == 1 ? QString() : QString::number(date));
        if (item.children)
            part += u'[' + outlineWithDates(*item.children) + u']';
        parts += part;
    }
    return parts.join(u' ');
}

} // namespace orvelle::test
