#include "links/LinkCodec.h"

#include "base/Uuid.h"
#include "links/RecordCodec.h"

namespace orvelle {

namespace {

constexpr std::array storedFields = {
    recordField<&LinkItem::id>("id"),
    recordField<&LinkItem::name>("name", true),
    recordField<&LinkItem::path>("path", true),
    recordField<&LinkItem::type>("type", true),
    recordField<&LinkItem::children>("children"),
    recordField<&LinkItem::bookmarkData>("bookmarkData"),
    recordField<&LinkItem::customIconName>("customIconName"),
    recordField<&LinkItem::customIconColor>("customIconColor"),
    recordField<&LinkItem::stableId>("stableId"),
    recordField<&LinkItem::createdAt>("createdAt"),
    recordField<&LinkItem::modifiedAt>("modifiedAt"),
    recordField<&LinkItem::noteContent>("noteContent"),
    recordField<&LinkItem::noteRTFData>("noteRTFData"),
    recordField<&LinkItem::noteColoredInMenu>("noteColoredInMenu"),
    recordField<&LinkItem::contentModifiedAt>("contentModifiedAt"),
};
constexpr std::array exchangeFields = sortedByKey(storedFields);

template<const auto &Fields>
bool readItemBy(LinkItem &item, JsonValue value, RecordDecoding &decoding)
{
    constexpr std::size_t id = recordFieldIndex(Fields, "id");
    constexpr std::size_t stableId = recordFieldIndex(Fields, "stableId");
    std::bitset<Fields.size()> seen;
    if (!readRecordFields(item, Fields, value, decoding, seen))
        return false;
    if (!seen[id])
        item.id = QUuid::createUuid();
    if (!seen[stableId]) {
        item.stableId = newUuidText();
        decoding.madeStableIds = true;
    }
    return true;
}

bool readItem(LinkItem &item, JsonValue value, RecordDecoding &decoding)
{
    if (decoding.admit && !decoding.admit())
        return false;
    return decoding.form == RecordForm::Stored ? readItemBy<storedFields>(item, value, decoding)
                                               : readItemBy<exchangeFields>(item, value, decoding);
}

void writeItem(RecordEncoding &encoding, const LinkItem &item)
{
    const auto &fields = encoding.form == RecordForm::Stored ? storedFields : exchangeFields;
    writeRecordFields(encoding, fields, item);
}

template<typename T>
Result<T, LinkCodecError> decode(const QByteArray &bytes, bool (*readValue)(T &, JsonValue, RecordDecoding &),
                                 LinkCodecNotes *notes = nullptr)
{
    const auto document = JsonDocument::parseInPlace(bytes);
    if (!document)
        return LinkCodecError{document.error().reason};
    T result;
    RecordDecoding decoding;
    if (!readValue(result, document->root(), decoding))
        return LinkCodecError{QStringLiteral("missing or invalid: ") + decoding.place()};
    if (notes)
        notes->madeStableIds = decoding.madeStableIds;
    return result;
}

} // namespace

bool readRecordValue(LinkList &list, JsonValue value, RecordDecoding &decoding)
{
    if (!value.isArray())
        return false;
    list.reserve(value.size());
    return value.forEachElement([&](JsonValue element) {
        return readItem(list.emplace_back(), element, decoding) || decoding.failAtIndex(list.size() - 1);
    });
}

void writeRecordValue(RecordEncoding &encoding, const LinkList &list)
{
    encoding.writer.beginArray();
    for (const LinkItem &item : list)
        writeItem(encoding, item);
    encoding.writer.endArray();
}

QByteArray encodeLinks(const LinkList &links)
{
    JsonWriter writer;
    RecordEncoding encoding{writer};
    writeRecordValue(encoding, links);
    return writer.take();
}

QByteArray encodeLink(const LinkItem &item)
{
    JsonWriter writer;
    RecordEncoding encoding{writer};
    writeItem(encoding, item);
    return writer.take();
}

Result<LinkList, LinkCodecError> decodeLinks(const QByteArray &bytes, LinkCodecNotes *notes)
{
    return decode<LinkList>(bytes, readRecordValue, notes);
}

Result<LinkItem, LinkCodecError> decodeLink(const QByteArray &bytes)
{
    return decode<LinkItem>(bytes, readItem);
}

} // namespace orvelle
