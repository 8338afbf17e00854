#include "SampleTrees.h"

namespace orvelle::bench {

namespace {

using namespace Qt::StringLiterals;

QString stableId(int number)
{
    return u"6C2F0E5A-9D41-4B7E-8A30-%1"_s.arg(number, 12, 16, QLatin1Char('0')).toUpper();
}

LinkItem sampleLink(int number)
{
    const Timestamp created{780'000'000.0 + number * 37.25};
    LinkItem item = LinkItem::make(u"Link number %1 of the sample"_s.arg(number),
                                   u"https://host%1.example.com/a/page?id=%2"_s.arg(number % 97).arg(number),
                                   LinkType::Url, created);
    item.stableId = stableId(number);
    if (number % 10 == 3) {
        item.type = LinkType::Note;
        item.path.clear();
        item.noteContent = u"A note, the %1th of them.\nWith a second line."_s.arg(number);
        item.customIconColor = u"yellow"_s;
    } else if (number % 10 == 7) {
        item.customIconColor = u"green"_s;
        item.noteColoredInMenu = true;
    }
    return item;
}

void makeHeavy(LinkItem &item, int number)
{
    if (item.type == LinkType::Note)
        item.noteContent = u"Line of a note that somebody wrote some time ago. "_s.repeated(30);
    else
        item.bookmarkData = QByteArray(240 + number % 64, static_cast<char>('A' + number % 26));
}

LinkList dealOut(const LinkList &links, int groups)
{
    if (groups == 0)
        return links;
    LinkList tree;
    for (int i = 0; i < groups; ++i) {
        LinkItem group = LinkItem::make(u"Group %1"_s.arg(i + 1), {}, LinkType::Group, Timestamp{780'000'000.0});
        group.stableId = stableId(1'000'000 + i);
        const qsizetype begin = links.size() * i / groups;
        group.children = links.mid(begin, links.size() * (i + 1) / groups - begin);
        tree.append(group);
    }
    return tree;
}

} // namespace

LinkList sampleTree(int count, int groups)
{
    LinkList links;
    for (int i = 0; i < count; ++i)
        links.append(sampleLink(i));
    return dealOut(links, groups);
}

LinkList heavySampleTree(int count, int groups)
{
    LinkList links;
    for (int i = 0; i < count; ++i) {
        links.append(sampleLink(i));
        makeHeavy(links.last(), i);
    }
    return dealOut(links, groups);
}

} // namespace orvelle::bench
