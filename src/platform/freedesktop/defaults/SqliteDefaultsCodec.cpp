#include "platform/freedesktop/defaults/SqliteDefaultsCodec.h"

#include <QStringEncoder>
#include <QtEndian>

#include <cmath>
#include <cstring>
#include <limits>

namespace orvelle {

namespace {

constexpr const char *typeNames[] = {"bool", "int",     "double",    "string",  "data",
                                     "date", "strings", "dataArray", "intArray"};
static_assert(std::size(typeNames) == std::variant_size_v<DefaultsValue>);

template<typename T>
void appendLittleEndian(QByteArray &bytes, T value)
{
    const T swapped = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char *>(&swapped), sizeof swapped);
}

QByteArray toUtf16(const QString &text)
{
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    if (!text.isEmpty())
        qToLittleEndian<quint16>(text.utf16(), text.size(), bytes.data());
    return bytes;
}

std::optional<QString> fromUtf16(const QByteArray &bytes)
{
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    QString text(bytes.size() / 2, Qt::Uninitialized);
    if (!bytes.isEmpty())
        qFromLittleEndian<quint16>(bytes.constData(), text.size(), text.data());
    return text;
}

std::optional<QByteArray> encodeList(const QList<QByteArray> &elements)
{
    QByteArray bytes;
    for (const QByteArray &element : elements) {
        if (element.size() > std::numeric_limits<quint32>::max())
            return std::nullopt;
        appendLittleEndian(bytes, static_cast<quint32>(element.size()));
        bytes += element;
    }
    return bytes;
}

std::optional<QList<QByteArray>> decodeList(const QByteArray &bytes)
{
    QList<QByteArray> elements;
    qsizetype at = 0;
    while (at < bytes.size()) {
        if (bytes.size() - at < 4)
            return std::nullopt;
        const auto length = static_cast<qsizetype>(qFromLittleEndian<quint32>(bytes.constData() + at));
        at += 4;
        if (bytes.size() - at < length)
            return std::nullopt;
        elements += bytes.mid(at, length);
        at += length;
    }
    return elements;
}

std::optional<QByteArray> encodeStrings(const QStringList &strings)
{
    QList<QByteArray> elements;
    for (const QString &text : strings)
        elements += toUtf16(text);
    return encodeList(elements);
}

std::optional<DefaultsValue> decodeStrings(const QByteArray &bytes)
{
    const auto elements = decodeList(bytes);
    if (!elements)
        return std::nullopt;
    QStringList strings;
    for (const QByteArray &element : *elements) {
        const auto text = fromUtf16(element);
        if (!text)
            return std::nullopt;
        strings += *text;
    }
    return strings;
}

QByteArray encodeInts(const QList<qint64> &numbers)
{
    QByteArray bytes;
    for (const qint64 number : numbers)
        appendLittleEndian(bytes, number);
    return bytes;
}

std::optional<DefaultsValue> decodeInts(const QByteArray &bytes)
{
    if (bytes.size() % 8 != 0)
        return std::nullopt;
    QList<qint64> numbers(bytes.size() / 8);
    if (!bytes.isEmpty())
        qFromLittleEndian<qint64>(bytes.constData(), numbers.size(), numbers.data());
    return numbers;
}

std::optional<DefaultsValue> decodeText(const SqliteStatement &row, int column)
{
    if (row.columnType(column) == SQLITE_TEXT)
        return row.text(column);
    if (row.columnType(column) != SQLITE_BLOB)
        return std::nullopt;
    if (const auto text = fromUtf16(row.bytes(column)))
        return *text;
    return std::nullopt;
}

std::optional<DefaultsValue> decodeBlob(const QByteArray &type, const QByteArray &bytes)
{
    if (type == "data")
        return bytes;
    if (type == "strings")
        return decodeStrings(bytes);
    if (type == "intArray")
        return decodeInts(bytes);
    if (type == "dataArray") {
        if (const auto elements = decodeList(bytes))
            return *elements;
    }
    return std::nullopt;
}

/// How each type becomes a column's value; the storable ones only.
struct Encoder {
    using Column = std::optional<std::variant<qint64, double, QByteArray>>;

    Column operator()(bool value) const { return qint64(value); }
    Column operator()(qint64 value) const { return value; }
    Column operator()(double value) const { return std::isnan(value) ? Column() : Column(value); }
    Column operator()(Timestamp value) const { return (*this)(value.seconds); }
    Column operator()(const QByteArray &value) const { return value; }
    Column operator()(const QString &value) const { return value.isValidUtf16() ? value.toUtf8() : toUtf16(value); }
    Column operator()(const QList<qint64> &value) const { return encodeInts(value); }
    Column operator()(const QStringList &value) const { return list(encodeStrings(value)); }
    Column operator()(const QList<QByteArray> &value) const { return list(encodeList(value)); }

private:
    static Column list(const std::optional<QByteArray> &bytes) { return bytes ? Column(*bytes) : Column(); }
};

} // namespace

EncodedDefault::EncodedDefault(const DefaultsValue &value) : m_type(typeNames[value.index()])
{
    const auto column = std::visit(Encoder(), value);
    m_storable = column.has_value();
    if (column)
        m_value = *column;
    const auto *text = std::get_if<QString>(&value);
    m_isText = text && text->isValidUtf16();
}

void EncodedDefault::bind(SqliteStatement &statement, int index) const
{
    statement.bindText(index, m_type);
    if (const auto *integer = std::get_if<qint64>(&m_value))
        statement.bindInt(index + 1, *integer);
    else if (const auto *real = std::get_if<double>(&m_value))
        statement.bindDouble(index + 1, *real);
    else if (m_isText)
        statement.bindText(index + 1, std::get<QByteArray>(m_value));
    else
        statement.bindBlob(index + 1, std::get<QByteArray>(m_value));
}

std::optional<DefaultsValue> decodeDefault(const SqliteStatement &row, int index)
{
    const QByteArray type = row.bytes(index);
    const int column = index + 1;
    if (type == "string")
        return decodeText(row, column);
    switch (row.columnType(column)) {
    case SQLITE_INTEGER:
        if (type == "bool")
            return row.integer(column) != 0;
        return type == "int" ? std::optional<DefaultsValue>(row.integer(column)) : std::nullopt;
    case SQLITE_FLOAT:
        if (type == "date")
            return Timestamp{row.real(column)};
        return type == "double" ? std::optional<DefaultsValue>(row.real(column)) : std::nullopt;
    case SQLITE_BLOB:
        return decodeBlob(type, row.bytes(column));
    default:
        return std::nullopt;
    }
}

} // namespace orvelle
