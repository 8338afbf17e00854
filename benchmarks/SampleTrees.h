#pragma once

#include "links/LinkItem.h"

namespace orvelle::bench {

/// `count` links, notes among them, the same at every call but for run ids.
/// With `groups` > 0 they are dealt out evenly to that many groups; with 0
/// they form one flat list.
LinkList sampleTree(int count, int groups);

/// The same with bookmarks and note texts as people have them: about 830
/// bytes for each link in the stored form.
LinkList heavySampleTree(int count, int groups);

} // namespace orvelle::bench
