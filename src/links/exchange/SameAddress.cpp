#include "links/exchange/SameAddress.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// Scheme and host in lower case, no slash at the end that stands for nothing
/// else. By hand, as taking thousands of addresses apart takes too long.
QString comparable(const QString &address)
{
    QString trimmed = address.trimmed();
    const qsizetype scheme = trimmed.indexOf("://"_L1);
    if (scheme < 0)
        return trimmed;
    qsizetype hostEnd = scheme + 3;
    while (hostEnd < trimmed.size() && !QStringView(u"/?#").contains(trimmed[hostEnd]))
        ++hostEnd;
    QString rest = trimmed.mid(hostEnd);
    if (rest == "/"_L1)
        rest.clear();
    return trimmed.first(hostEnd).toLower() + rest;
}

bool isLink(const LinkItem &item)
{
    return item.type == LinkType::Url || item.type == LinkType::File || item.type == LinkType::Folder;
}

} // namespace

std::optional<QStringList> placeOfSameAddress(const LinkList &links, const LinkItem &item)
{
    const QString wanted = comparable(item.path);
    const std::function<std::optional<QStringList>(const LinkList &)> search =
        [&](const LinkList &list) -> std::optional<QStringList> {
        for (const LinkItem &candidate : list) {
            if (isLink(candidate) && comparable(candidate.path) == wanted)
                return QStringList();
            if (!candidate.children)
                continue;
            if (auto place = search(*candidate.children)) {
                place->prepend(candidate.name);
                return place;
            }
        }
        return std::nullopt;
    };
    return search(links);
}

} // namespace orvelle
