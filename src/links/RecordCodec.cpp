#include "links/RecordCodec.h"

#include "base/Base64.h"
#include "base/IsoDate.h"
#include "base/Text.h"
#include "base/Uuid.h"

#include <cmath>

namespace orvelle {

QString RecordDecoding::place() const
{
    return badPlace.isEmpty() ? QStringLiteral("the root") : badPlace;
}

bool RecordDecoding::failAtKey(std::string_view key)
{
    const bool dot = !badPlace.isEmpty() && !badPlace.startsWith(u'[');
    badPlace = QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size())) +
               (dot ? QStringLiteral(".") : QString()) + badPlace;
    return false;
}

bool RecordDecoding::failAtIndex(qsizetype index)
{
    const bool dot = !badPlace.isEmpty() && !badPlace.startsWith(u'[');
    badPlace.prepend(QStringLiteral("[%1]").arg(index) + (dot ? QStringLiteral(".") : QString()));
    return false;
}

bool readRecordValue(QUuid &target, JsonValue value, RecordDecoding &)
{
    const auto text = value.asString();
    const auto uuid = text ? parseUuid(*text) : std::nullopt;
    if (uuid)
        target = *uuid;
    return uuid.has_value();
}

bool readRecordValue(QString &target, JsonValue value, RecordDecoding &)
{
    const auto utf8 = value.asString();
    if (utf8)
        target = textFromUtf8(*utf8);
    return utf8.has_value();
}

bool readRecordValue(LinkType &target, JsonValue value, RecordDecoding &)
{
    const auto text = value.asString();
    const auto type =
        text ? linkTypeFromRawValue(QLatin1StringView(text->data(), qsizetype(text->size()))) : std::nullopt;
    if (type)
        target = *type;
    return type.has_value();
}

bool readRecordValue(QByteArray &target, JsonValue value, RecordDecoding &)
{
    const auto text = value.asString();
    auto bytes = text ? base64Decoded(*text) : std::nullopt;
    if (bytes)
        target = std::move(*bytes);
    return bytes.has_value();
}

bool readRecordValue(Timestamp &target, JsonValue value, RecordDecoding &decoding)
{
    std::optional<Timestamp> moment;
    if (decoding.form == RecordForm::Exchange) {
        if (const auto text = value.asString())
            moment = parseIsoDate(*text);
    } else if (const auto seconds = value.asDouble()) {
        moment = Timestamp{*seconds};
    }
    if (moment)
        target = *moment;
    return moment.has_value();
}

bool readRecordValue(bool &target, JsonValue value, RecordDecoding &)
{
    const auto flag = value.asBool();
    if (flag)
        target = *flag;
    return flag.has_value();
}

bool readRecordValue(qint64 &target, JsonValue value, RecordDecoding &)
{
    const auto number = value.asInt();
    if (number)
        target = *number;
    return number.has_value();
}

bool isAbsentValue(const std::optional<Timestamp> &value)
{
    return !value || !std::isfinite(value->seconds);
}

void writeRecordValue(RecordEncoding &encoding, const QUuid &value)
{
    encoding.writer.string(uuidText(value));
}

void writeRecordValue(RecordEncoding &encoding, const QString &value)
{
    encoding.writer.string(value);
}

void writeRecordValue(RecordEncoding &encoding, LinkType value)
{
    encoding.writer.string(rawValue(value));
}

void writeRecordValue(RecordEncoding &encoding, const QByteArray &value)
{
    encoding.writer.base64(value);
}

void writeRecordValue(RecordEncoding &encoding, Timestamp value)
{
    if (encoding.form == RecordForm::Exchange)
        encoding.writer.plainText(IsoDate(value).text());
    else
        encoding.writer.number(value.seconds);
}

void writeRecordValue(RecordEncoding &encoding, bool value)
{
    encoding.writer.boolean(value);
}

void writeRecordValue(RecordEncoding &encoding, qint64 value)
{
    encoding.writer.number(value);
}

} // namespace orvelle
