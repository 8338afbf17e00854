#pragma once

#include "base/JsonReader.h"
#include "base/JsonWriter.h"
#include "base/Timestamp.h"
#include "links/LinkItem.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <functional>

// How the records of this folder become JSON and come back, by tables of
// fields. A record has such a table in a specialisation of RecordTable, in
// the order of its keys. Required keys must be there; null reads as absent; of
// a repeated key the first counts; unknown keys are ignored; a value of the
// wrong type fails the whole.

namespace orvelle {

/// The two forms that a tree is written in.
enum class RecordForm {
    Stored,   ///< keys in their own order, dates as seconds since 2001
    Exchange, ///< keys sorted, dates as ISO 8601 text
};

/// The state of one decoding.
struct RecordDecoding {
    RecordForm form = RecordForm::Stored;
    /// Asked before each element of a list, items of a tree among them; false
    /// ends the decoding. May be empty.
    std::function<bool()> admit;
    bool madeStableIds = false;
    QString badPlace; ///< "[3].children[0].type", built outwards while a failure unwinds

    /// Where it failed, for a message.
    QString place() const;
    bool failAtKey(std::string_view key);
    bool failAtIndex(qsizetype index);
};

struct RecordEncoding {
    JsonWriter &writer;
    RecordForm form = RecordForm::Stored;
};

bool readRecordValue(QUuid &target, JsonValue value, RecordDecoding &);
bool readRecordValue(QString &target, JsonValue value, RecordDecoding &);
bool readRecordValue(LinkType &target, JsonValue value, RecordDecoding &);
bool readRecordValue(QByteArray &target, JsonValue value, RecordDecoding &);
bool readRecordValue(Timestamp &target, JsonValue value, RecordDecoding &);
bool readRecordValue(bool &target, JsonValue value, RecordDecoding &);
bool readRecordValue(qint64 &target, JsonValue value, RecordDecoding &);
/// A tree: every item counts, at any depth.
bool readRecordValue(LinkList &target, JsonValue value, RecordDecoding &);

void writeRecordValue(RecordEncoding &encoding, const QUuid &value);
void writeRecordValue(RecordEncoding &encoding, const QString &value);
void writeRecordValue(RecordEncoding &encoding, LinkType value);
void writeRecordValue(RecordEncoding &encoding, const QByteArray &value);
void writeRecordValue(RecordEncoding &encoding, Timestamp value);
void writeRecordValue(RecordEncoding &encoding, bool value);
void writeRecordValue(RecordEncoding &encoding, qint64 value);
void writeRecordValue(RecordEncoding &encoding, const LinkList &value);

/// An absent value has no key.
template<typename T>
bool isAbsentValue(const T &)
{
    return false;
}
template<typename T>
bool isAbsentValue(const std::optional<T> &value)
{
    return !value;
}
/// No form has a text for a date that is no number.
bool isAbsentValue(const std::optional<Timestamp> &value);

template<typename Record>
struct RecordField {
    std::string_view key;
    bool required;
    bool (*read)(Record &record, JsonValue value, RecordDecoding &decoding);
    void (*write)(RecordEncoding &encoding, std::string_view key, const Record &record);
};

template<typename Record>
struct RecordTable; // `static constexpr std::array fields`

template<typename Record>
concept HasRecordTable = requires
{
    RecordTable<Record>::fields;
};

template<typename T>
bool readRecordValue(std::optional<T> &target, JsonValue value, RecordDecoding &decoding);
template<typename T>
bool readRecordValue(QList<T> &target, JsonValue value, RecordDecoding &decoding);
template<HasRecordTable Record>
bool readRecordValue(Record &target, JsonValue value, RecordDecoding &decoding);
template<typename T>
void writeRecordValue(RecordEncoding &encoding, const std::optional<T> &value);
template<typename T>
void writeRecordValue(RecordEncoding &encoding, const QList<T> &value);
template<HasRecordTable Record>
void writeRecordValue(RecordEncoding &encoding, const Record &record);

template<typename Record, typename T>
Record recordOfMember(T Record::*);

template<auto Member, typename Record = decltype(recordOfMember(Member))>
constexpr RecordField<Record> recordField(std::string_view key, bool required = false)
{
    return {key, required,
            [](Record &record, JsonValue value, RecordDecoding &decoding) {
                return readRecordValue(record.*Member, value, decoding);
            },
            [](RecordEncoding &encoding, std::string_view name, const Record &record) {
                if (isAbsentValue(record.*Member))
                    return;
                encoding.writer.key(name);
                writeRecordValue(encoding, record.*Member);
            }};
}

template<typename Record, std::size_t N>
constexpr std::array<RecordField<Record>, N> sortedByKey(std::array<RecordField<Record>, N> fields)
{
    std::sort(fields.begin(), fields.end(), [](const auto &a, const auto &b) { return a.key < b.key; });
    return fields;
}

template<typename Record, std::size_t N>
constexpr std::size_t recordFieldIndex(const std::array<RecordField<Record>, N> &fields, std::string_view key,
                                       std::size_t from = 0)
{
    // Looked for from `from` on: our own documents have the keys in the table's order.
    for (std::size_t tried = 0; tried < N; ++tried) {
        const std::size_t i = (from + tried) % N;
        if (fields[i].key == key)
            return i;
    }
    return N;
}

/// Reads an object by its table; `seen` tells which keys it had.
template<typename Record, std::size_t N>
bool readRecordFields(Record &record, const std::array<RecordField<Record>, N> &fields, JsonValue value,
                      RecordDecoding &decoding, std::bitset<N> &seen)
{
    struct {
        Record &record;
        const std::array<RecordField<Record>, N> &fields;
        RecordDecoding &decoding;
        std::bitset<N> &seen;
        std::size_t next = 0;
    } state{record, fields, decoding, seen};
    const bool read = value.forEachMember([&state](std::string_view key, JsonValue member) {
        const std::size_t i = recordFieldIndex(state.fields, key, state.next);
        if (i == N || state.seen[i] || member.isNull())
            return true;
        state.seen.set(i);
        state.next = i + 1;
        return state.fields[i].read(state.record, member, state.decoding) || state.decoding.failAtKey(key);
    });
    if (!read)
        return false;
    for (std::size_t i = 0; i < N; ++i) {
        if (fields[i].required && !seen[i])
            return decoding.failAtKey(fields[i].key);
    }
    return true;
}

template<typename Record, std::size_t N>
void writeRecordFields(RecordEncoding &encoding, const std::array<RecordField<Record>, N> &fields, const Record &record)
{
    encoding.writer.beginObject();
    for (const RecordField<Record> &field : fields)
        field.write(encoding, field.key, record);
    encoding.writer.endObject();
}

/// Absent for null, which only elements of a list can be here.
template<typename T>
bool readRecordValue(std::optional<T> &target, JsonValue value, RecordDecoding &decoding)
{
    return value.isNull() || readRecordValue(target.emplace(), value, decoding);
}

template<typename T>
bool readRecordValue(QList<T> &target, JsonValue value, RecordDecoding &decoding)
{
    if (!value.isArray())
        return false;
    return value.forEachElement([&](JsonValue element) {
        if (decoding.admit && !decoding.admit())
            return false;
        return readRecordValue(target.emplace_back(), element, decoding) || decoding.failAtIndex(target.size() - 1);
    });
}

template<HasRecordTable Record>
bool readRecordValue(Record &target, JsonValue value, RecordDecoding &decoding)
{
    std::bitset<RecordTable<Record>::fields.size()> seen;
    return readRecordFields(target, RecordTable<Record>::fields, value, decoding, seen);
}

template<typename T>
void writeRecordValue(RecordEncoding &encoding, const std::optional<T> &value)
{
    if (value)
        writeRecordValue(encoding, *value);
    else
        encoding.writer.null();
}

template<typename T>
void writeRecordValue(RecordEncoding &encoding, const QList<T> &value)
{
    encoding.writer.beginArray();
    for (const T &element : value)
        writeRecordValue(encoding, element);
    encoding.writer.endArray();
}

template<HasRecordTable Record>
void writeRecordValue(RecordEncoding &encoding, const Record &record)
{
    writeRecordFields(encoding, RecordTable<Record>::fields, record);
}

} // namespace orvelle
