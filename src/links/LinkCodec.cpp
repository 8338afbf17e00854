#include "links/LinkCodec.h"

#include "base/Base64.h"
#include "base/JsonReader.h"
#include "base/JsonWriter.h"
#include "base/Text.h"
#include "base/Uuid.h"

#include <array>
#include <bitset>
#include <cmath>

namespace orvelle {

namespace {

struct Decoding {
    LinkCodecNotes notes;
    QString badPlace; ///< built outwards while a failure unwinds
};

bool readList(LinkList &list, JsonValue value, Decoding &decoding);

bool read(QUuid &target, JsonValue value, Decoding &)
{
    const auto text = value.asString();
    const auto uuid = text ? parseUuid(*text) : std::nullopt;
    if (uuid)
        target = *uuid;
    return uuid.has_value();
}

bool read(QString &target, JsonValue value, Decoding &)
{
    const auto utf8 = value.asString();
    if (utf8)
        target = textFromUtf8(*utf8);
    return utf8.has_value();
}

bool read(LinkType &target, JsonValue value, Decoding &)
{
    const auto text = value.asString();
    const auto type =
        text ? linkTypeFromRawValue(QLatin1StringView(text->data(), qsizetype(text->size()))) : std::nullopt;
    if (type)
        target = *type;
    return type.has_value();
}

bool read(LinkList &target, JsonValue value, Decoding &decoding)
{
    return readList(target, value, decoding);
}

bool read(QByteArray &target, JsonValue value, Decoding &)
{
    const auto text = value.asString();
    auto bytes = text ? base64Decoded(*text) : std::nullopt;
    if (bytes)
        target = std::move(*bytes);
    return bytes.has_value();
}

bool read(Timestamp &target, JsonValue value, Decoding &)
{
    const auto seconds = value.asDouble();
    if (seconds)
        target.seconds = *seconds;
    return seconds.has_value();
}

bool read(bool &target, JsonValue value, Decoding &)
{
    const auto flag = value.asBool();
    if (flag)
        target = *flag;
    return flag.has_value();
}

template<typename T>
bool read(std::optional<T> &target, JsonValue value, Decoding &decoding)
{
    return read(target.emplace(), value, decoding);
}

void write(JsonWriter &writer, const LinkList &list);

void write(JsonWriter &writer, const QUuid &value)
{
    writer.string(uuidText(value));
}

void write(JsonWriter &writer, const QString &value)
{
    writer.string(value);
}

void write(JsonWriter &writer, LinkType value)
{
    writer.string(rawValue(value));
}

void write(JsonWriter &writer, const QByteArray &value)
{
    writer.base64(value);
}

void write(JsonWriter &writer, Timestamp value)
{
    writer.number(value.seconds);
}

void write(JsonWriter &writer, bool value)
{
    writer.boolean(value);
}

template<typename T>
bool isAbsent(const T &)
{
    return false;
}

template<typename T>
bool isAbsent(const std::optional<T> &value)
{
    return !value;
}

bool isAbsent(const std::optional<Timestamp> &value)
{
    return !value || !std::isfinite(value->seconds);
}

template<typename T>
void write(JsonWriter &writer, const std::optional<T> &value)
{
    write(writer, *value);
}

struct Field {
    std::string_view key;
    bool required;
    bool (*read)(LinkItem &item, JsonValue value, Decoding &decoding);
    void (*write)(JsonWriter &writer, std::string_view key, const LinkItem &item);
};

template<auto Member>
constexpr Field field(std::string_view key, bool required = false)
{
    return {key, required,
            [](LinkItem &item, JsonValue value, Decoding &decoding) { return read(item.*Member, value, decoding); },
            [](JsonWriter &writer, std::string_view name, const LinkItem &item) {
                if (isAbsent(item.*Member))
                    return;
                writer.key(name);
                write(writer, item.*Member);
            }};
}

constexpr std::array fields = {
    field<&LinkItem::id>("id"),
    field<&LinkItem::name>("name", true),
    field<&LinkItem::path>("path", true),
    field<&LinkItem::type>("type", true),
    field<&LinkItem::children>("children"),
    field<&LinkItem::bookmarkData>("bookmarkData"),
    field<&LinkItem::customIconName>("customIconName"),
    field<&LinkItem::customIconColor>("customIconColor"),
    field<&LinkItem::stableId>("stableId"),
    field<&LinkItem::createdAt>("createdAt"),
    field<&LinkItem::modifiedAt>("modifiedAt"),
    field<&LinkItem::noteContent>("noteContent"),
    field<&LinkItem::noteRTFData>("noteRTFData"),
    field<&LinkItem::noteColoredInMenu>("noteColoredInMenu"),
    field<&LinkItem::contentModifiedAt>("contentModifiedAt"),
};
constexpr std::size_t idField = 0;
constexpr std::size_t stableIdField = 8;
static_assert(fields[idField].key == "id" && fields[stableIdField].key == "stableId");

using FieldSet = std::bitset<fields.size()>;

/// Position of a key in the table, looked for from `from` on: our own
/// documents have the keys in the table's order.
std::size_t fieldIndex(std::string_view key, std::size_t from)
{
    for (std::size_t tried = 0; tried < fields.size(); ++tried) {
        const std::size_t i = (from + tried) % fields.size();
        if (fields[i].key == key)
            return i;
    }
    return fields.size();
}

bool fail(Decoding &decoding, std::string_view place)
{
    const QString text = QString::fromLatin1(place.data(), static_cast<qsizetype>(place.size()));
    decoding.badPlace = decoding.badPlace.isEmpty() ? text : text + decoding.badPlace;
    return false;
}

bool completeItem(LinkItem &item, const FieldSet &seen, Decoding &decoding)
{
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].required && !seen[i])
            return fail(decoding, fields[i].key);
    }
    if (!seen[idField])
        item.id = QUuid::createUuid();
    if (!seen[stableIdField]) {
        item.stableId = newUuidText();
        decoding.notes.madeStableIds = true;
    }
    return true;
}

bool readItem(LinkItem &item, JsonValue value, Decoding &decoding)
{
    if (!value.isObject())
        return fail(decoding, "not an object");
    struct {
        LinkItem &item;
        Decoding &decoding;
        FieldSet seen;
        std::size_t next = 0;
    } state{item, decoding, {}};
    const bool read = value.forEachMember([&state](std::string_view key, JsonValue member) {
        const std::size_t i = fieldIndex(key, state.next);
        if (i == fields.size() || state.seen[i] || member.isNull())
            return true;
        state.seen.set(i);
        state.next = i + 1;
        return fields[i].read(state.item, member, state.decoding) || fail(state.decoding, fields[i].key);
    });
    return read && completeItem(item, state.seen, decoding);
}

bool readList(LinkList &list, JsonValue value, Decoding &decoding)
{
    if (!value.isArray())
        return false;
    list.reserve(value.size());
    return value.forEachElement([&](JsonValue element) {
        if (readItem(list.emplace_back(), element, decoding))
            return true;
        decoding.badPlace.prepend(QStringLiteral("[%1].").arg(list.size() - 1));
        return false;
    });
}

void writeItem(JsonWriter &writer, const LinkItem &item)
{
    writer.beginObject();
    for (const Field &f : fields)
        f.write(writer, f.key, item);
    writer.endObject();
}

void write(JsonWriter &writer, const LinkList &list)
{
    writer.beginArray();
    for (const LinkItem &item : list)
        writeItem(writer, item);
    writer.endArray();
}

template<typename T>
Result<T, LinkCodecError> decode(const QByteArray &bytes, bool (*readValue)(T &, JsonValue, Decoding &),
                                 LinkCodecNotes *notes = nullptr)
{
    const auto document = JsonDocument::parseInPlace(bytes);
    if (!document)
        return LinkCodecError{document.error().reason};
    T result;
    Decoding decoding;
    if (!readValue(result, document->root(), decoding)) {
        const QString place = decoding.badPlace.isEmpty() ? QStringLiteral("the root") : decoding.badPlace;
        return LinkCodecError{QStringLiteral("missing or invalid: ") + place};
    }
    if (notes)
        *notes = decoding.notes;
    return result;
}

} // namespace

QByteArray encodeLinks(const LinkList &links)
{
    JsonWriter writer;
    write(writer, links);
    return writer.take();
}

QByteArray encodeLink(const LinkItem &item)
{
    JsonWriter writer;
    writeItem(writer, item);
    return writer.take();
}

Result<LinkList, LinkCodecError> decodeLinks(const QByteArray &bytes, LinkCodecNotes *notes)
{
    return decode<LinkList>(bytes, readList, notes);
}

Result<LinkItem, LinkCodecError> decodeLink(const QByteArray &bytes)
{
    return decode<LinkItem>(bytes, readItem);
}

} // namespace orvelle
