#pragma once

#include "base/Result.h"
#include "links/LinkItem.h"

#include <QByteArray>
#include <QString>

namespace orvelle {

class JsonValue;
class JsonWriter;

/// Why bytes are no tree. `reason` names the place ("[3].children[0]: type"),
/// never a name or an address.
struct LinkCodecError {
    QString reason;
};

/// What decoding had to make up.
struct LinkCodecNotes {
    bool madeStableIds = false; ///< an item had none: save, or it gets another one next time
};

/// Groups nested deeper than this would not decode again (the JSON reader's
/// limit of 512 levels, two of which each level of the tree takes).
constexpr int maxTreeLevels = 256;

/// The stored form of a tree: a compact JSON array of objects with the keys
/// "id", "name", "path", "type", "children", "bookmarkData", "customIconName",
/// "customIconColor", "stableId", "createdAt", "modifiedAt", "noteContent",
/// "noteRTFData", "noteColoredInMenu", "contentModifiedAt", in this order.
/// Bytes are base64 (RFC 4648, padded), dates seconds since 2001-01-01 UTC.
/// Absent values have no key; faviconData is never written.
QByteArray encodeLinks(const LinkList &links);

/// One item in the same form; what drag and drop carries.
QByteArray encodeLink(const LinkItem &item);

/// Reads the stored form. "name", "path" and "type" are required; a missing
/// "id" or "stableId" becomes a new random one; any other key may be missing
/// or null; unknown keys are ignored and of a repeated key the first counts.
/// One bad item fails the whole.
Result<LinkList, LinkCodecError> decodeLinks(const QByteArray &bytes, LinkCodecNotes *notes = nullptr);

Result<LinkItem, LinkCodecError> decodeLink(const QByteArray &bytes);

} // namespace orvelle
