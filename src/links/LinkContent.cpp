#include "links/LinkContent.h"

namespace orvelle {

LinkItem contentOf(LinkItem item)
{
    item.id = {};
    item.children.reset();
    item.bookmarkData.reset();
    item.faviconData.reset();
    item.createdAt.reset();
    item.modifiedAt.reset();
    item.contentModifiedAt.reset();
    return item;
}

} // namespace orvelle
