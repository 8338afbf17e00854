#include "links/LinkTree.h"
#include "links/exchange/BookmarksHtml.h"

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

namespace {

/// What a written file gives back: names, addresses and kinds in order.
bool sameLinks(const LinkList &a, const LinkList &b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const bool same = a[i].name == b[i].name && a[i].path == b[i].path && a[i].type == b[i].type;
        if (!same || !sameLinks(a[i].children.value_or(LinkList()), b[i].children.value_or(LinkList())))
            return false;
    }
    return true;
}

} // namespace

/// What is read stays within the limits and comes back from the file written
/// of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto read = readBookmarksHtml(bytes, Timestamp{0});
    if (!read)
        return 0;
    if (treeLevels(read->items) > foreignLevels)
        std::abort();
    const auto again = readBookmarksHtml(writeBookmarksHtml(read->items, QStringLiteral("t")).html, Timestamp{0});
    const LinkList back = again ? again->items : LinkList();
    if (!sameLinks(back, read->items))
        std::abort();
    return 0;
}
