#pragma once

#include "links/LinkItem.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace orvelle {

/// `text` as the search compares it: without regard to case, accents and width.
QString folded(const QString &text);

/// What the search field asks for: every word must occur, in the name or in
/// the address, wherever.
class LinkSearch
{
public:
    LinkSearch() = default;
    explicit LinkSearch(const QString &text);

    bool isEmpty() const { return m_words.isEmpty(); }

    /// `haystack` is foldedForSearch() of an item.
    bool matches(const QString &haystack) const;

    struct Range {
        qsizetype start = 0;
        qsizetype length = 0;
        friend bool operator==(const Range &, const Range &) = default;
    };
    /// Where the words occur in `text` as it is written, in order and without
    /// overlap. Looks at the first thousand characters only.
    QList<Range> rangesIn(const QString &text) const;

private:
    QStringList m_words;
};

/// The item's name and address, folded once for many searches.
QString foldedForSearch(const LinkItem &item);

} // namespace orvelle
