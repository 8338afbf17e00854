#include "links/exchange/ExchangeAnalysis.h"

#include "links/LinkContent.h"

#include <QHash>

namespace orvelle {

namespace {

struct Placed {
    LinkItem item;  ///< without what is no content
    QString parent; ///< stable id of its group
    friend bool operator==(const Placed &, const Placed &) = default;
};
using PlacedById = QHash<QString, Placed>;

void place(const LinkList &links, const QString &parent, PlacedById &placed)
{
    for (const LinkItem &item : links) {
        placed.insert(item.stableId, {contentOf(item), parent});
        if (item.children)
            place(*item.children, item.stableId, placed);
    }
}

PlacedById placedById(const LinkList &links)
{
    PlacedById placed;
    place(links, {}, placed);
    return placed;
}

} // namespace

ExchangeAnalysis analyseExchange(const LinkList &here, const LinkList &other)
{
    const PlacedById ours = placedById(here);
    const PlacedById theirs = placedById(other);
    ExchangeAnalysis analysis;
    for (auto it = theirs.begin(); it != theirs.end(); ++it) {
        const auto own = ours.constFind(it.key());
        if (own == ours.constEnd())
            ++analysis.added;
        else
            ++(*own == *it ? analysis.equal : analysis.changed);
    }
    analysis.onlyHere = ours.size() - analysis.equal - analysis.changed;
    return analysis;
}

} // namespace orvelle
