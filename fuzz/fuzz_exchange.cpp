#include "base/Uuid.h"
#include "links/LinkCodec.h"
#include "links/LinkTree.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeImport.h"
#include "platform/FileBookmarks.h"

#include <QSet>

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

namespace {

class NoBookmarks : public FileBookmarks
{
public:
    Result<QByteArray, FileBookmarkError> create(const QString &) const override { return FileBookmarkError{}; }
    Result<ResolvedBookmark, FileBookmarkError> resolve(const QByteArray &) const override
    {
        return FileBookmarkError{};
    }
    bool startAccess(const QString &) override { return false; }
    void stopAccess(const QString &) override {}
};

void check(bool holds)
{
    if (!holds)
        std::abort();
}

/// What the tree may rely on, whatever came in.
void checkTree(const LinkList &tree)
{
    QSet<QUuid> ids;
    QSet<QString> stableIds;
    walk(tree, [&](const LinkItem &item) {
        ids.insert(item.id);
        stableIds.insert(item.stableId);
        check(item.isGroup() == item.children.has_value() && !item.name.isEmpty() && !item.stableId.isEmpty());
    });
    const qint64 count = countAllLinks(tree);
    check(ids.size() == count && stableIds.size() == count && treeLevels(tree) <= maxImportDepth);
    const auto stored = decodeLinks(encodeLinks(tree));
    check(stored && *stored == tree);
}

void checkImport(const PreparedImport &prepared)
{
    LinkList tree;
    applyImport(tree, prepared.items, ImportMode::Merge);
    checkTree(tree);
    const LinkList before = tree;
    const AppliedImport again = applyImport(tree, prepared.items, ImportMode::Merge);
    check(again.imported == 0 && tree == before);
    applyImport(tree, prepared.items, ImportMode::Replace);
    checkTree(tree);
}

} // namespace

/// A document that is taken in leaves a tree as the editors would have made it,
/// and comes back unchanged from its own written form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    static_cast<void>(verifyExchange(bytes));
    NoBookmarks bookmarks;
    const auto prepared = prepareImport(bytes, bookmarks, QStringLiteral("/home/ada"), Timestamp{});
    if (!prepared)
        return 0;
    checkImport(*prepared);
    const auto document = decodeExchange(bytes);
    check(document.hasValue());
    const QByteArray once = encodeExchange(*document);
    const auto read = decodeExchange(once);
    check(read && encodeExchange(*read) == once);
    const auto report = verifyExchange(once);
    check(report && report->computed == linksChecksum(read->links));
    return 0;
}
