#include "support/Outline.h"

#include "base/Uuid.h"

#include <QStringList>

namespace orvelle::test {

namespace {

LinkList parse(QStringView &rest)
{
    LinkList list;
    while (!rest.isEmpty() && rest.front() != u']') {
        if (rest.front() == u' ') {
            rest = rest.mid(1);
            continue;
        }
        qsizetype end = 0;
        while (end < rest.size() && rest[end].isLetterOrNumber())
            ++end;
        Q_ASSERT(end > 0);
        LinkItem item = namedLink(rest.left(end).toString());
        rest = rest.mid(end);
        if (rest.startsWith(u'[')) {
            rest = rest.mid(1);
            item.type = LinkType::Group;
            item.path.clear();
            item.children = parse(rest);
            rest = rest.mid(1);
        }
        list += item;
    }
    return list;
}

} // namespace

QUuid idOf(const QString &name)
{
    return QUuid::createUuidV5(QUuid(), name);
}

LinkItem namedLink(const QString &name)
{
    LinkItem item = LinkItem::make(name, QStringLiteral("https://%1.example").arg(name), LinkType::Url, {1000});
    item.id = idOf(name);
    item.stableId = uuidText(item.id);
    return item;
}

LinkList treeFrom(const QString &outline)
{
    QStringView rest(outline);
    return parse(rest);
}

QString outlineOf(const LinkList &links)
{
    QStringList parts;
    for (const LinkItem &item : links)
        parts += item.children ? item.name + u'[' + outlineOf(*item.children) + u']' : item.name;
    return parts.join(u' ');
}

} // namespace orvelle::test
