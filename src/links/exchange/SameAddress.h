#pragma once

#include "links/LinkItem.h"

#include <QStringList>

#include <optional>

namespace orvelle {

/// The names of the groups, outermost first, around the first item that leads
/// where `item` leads; empty for the top level, absent when there is no such
/// item. "HTTP://Example.org" leads where "http://example.org/" does.
///
/// Quick enough to be asked at every keystroke in a tree of ten thousand.
std::optional<QStringList> placeOfSameAddress(const LinkList &links, const LinkItem &item);

} // namespace orvelle
