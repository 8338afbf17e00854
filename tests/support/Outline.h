#pragma once

#include "links/LinkItem.h"

#include <QString>

namespace orvelle::test {

/// The identity of the item of an outline that has this name.
QUuid idOf(const QString &name);

/// A web link named so, as outlines have it.
LinkItem namedLink(const QString &name);

/// A tree from its outline: "a f[b g[c]] d" is a link a, a group f that holds
/// b and a group g with c, and a link d. Empty groups are "g[]". Names are
/// single words; the same name always gives the same ids and dates.
LinkList treeFrom(const QString &outline);

/// The way back.
QString outlineOf(const LinkList &links);

} // namespace orvelle::test
