#include "app/cli/DefaultsForms.h"

#include "base/JsonReader.h"
#include "base/JsonWriter.h"

#include <cmath>

namespace orvelle {

namespace {

using Parsed = std::optional<DefaultsValue>;

Parsed parseBool(const QString &text)
{
    if (text != u"true" && text != u"false")
        return std::nullopt;
    return text == u"true";
}

Parsed parseInt(const QString &text)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok, 10);
    return ok ? Parsed(value) : std::nullopt;
}

std::optional<double> finiteNumber(const QString &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

Parsed parseDouble(const QString &text)
{
    const auto value = finiteNumber(text);
    return value ? Parsed(*value) : std::nullopt;
}

Parsed parseString(const QString &text)
{
    return text;
}

Parsed parseData(const QString &text)
{
    const auto decoded = QByteArray::fromBase64Encoding(text.toUtf8(), QByteArray::Base64Encoding |
                                                                           QByteArray::AbortOnBase64DecodingErrors);
    // The decoder overlooks missing padding; then the length tells.
    if (!decoded || text.size() % 4 != 0)
        return std::nullopt;
    return *decoded;
}

Parsed parseDate(const QString &text)
{
    const auto seconds = finiteNumber(text);
    return seconds ? Parsed(Timestamp{*seconds}) : std::nullopt;
}

Parsed parseStrings(const QString &text)
{
    const auto document = JsonDocument::parse(text.toUtf8());
    if (!document || !document->root().isArray())
        return std::nullopt;
    QStringList strings;
    const bool allStrings = document->root().forEachElement([&strings](JsonValue element) {
        const auto string = jsonText(element);
        if (string)
            strings += *string;
        return string.has_value();
    });
    return allStrings ? Parsed(strings) : std::nullopt;
}

struct Form {
    QLatin1StringView type;
    Parsed (*parse)(const QString &);
    const char *expected;
};

constexpr Form forms[] = {
    {QLatin1StringView("bool"), parseBool, "true or false"},
    {QLatin1StringView("int"), parseInt, "a whole number of at most 64 bits"},
    {QLatin1StringView("double"), parseDouble, "a finite number"},
    {QLatin1StringView("string"), parseString, "a text"},
    {QLatin1StringView("data"), parseData, "base64"},
    {QLatin1StringView("date"), parseDate, "a finite number of seconds since 2001-01-01"},
    {QLatin1StringView("strings"), parseStrings, "a JSON array of strings"},
};

QByteArray numberText(double value)
{
    return QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
}

template<typename List, typename Write>
QByteArray jsonArray(const List &list, const Write &write)
{
    JsonWriter json;
    json.beginArray();
    for (const auto &element : list)
        write(json, element);
    json.endArray();
    return json.take();
}

struct TypeName {
    QString operator()(bool) const { return QStringLiteral("bool"); }
    QString operator()(qint64) const { return QStringLiteral("int"); }
    QString operator()(double) const { return QStringLiteral("double"); }
    QString operator()(const QString &) const { return QStringLiteral("string"); }
    QString operator()(const QByteArray &) const { return QStringLiteral("data"); }
    QString operator()(Timestamp) const { return QStringLiteral("date"); }
    QString operator()(const QStringList &) const { return QStringLiteral("strings"); }
    QString operator()(const QList<QByteArray> &) const { return QStringLiteral("dataArray"); }
    QString operator()(const QList<qint64> &) const { return QStringLiteral("intArray"); }
};

struct Printed {
    QByteArray operator()(bool value) const { return value ? "true" : "false"; }
    QByteArray operator()(qint64 value) const { return QByteArray::number(value); }
    QByteArray operator()(double value) const { return numberText(value); }
    QByteArray operator()(const QString &value) const { return value.toUtf8(); }
    QByteArray operator()(const QByteArray &value) const { return value.toBase64(); }
    QByteArray operator()(Timestamp value) const { return numberText(value.seconds); }
    QByteArray operator()(const QStringList &value) const
    {
        return jsonArray(value, [](JsonWriter &json, const QString &s) { json.string(s); });
    }
    QByteArray operator()(const QList<QByteArray> &value) const
    {
        return jsonArray(value, [](JsonWriter &json, const QByteArray &b) { json.base64(b); });
    }
    QByteArray operator()(const QList<qint64> &value) const
    {
        return jsonArray(value, [](JsonWriter &json, qint64 n) { json.number(n); });
    }
};

} // namespace

QString defaultsTypeName(const DefaultsValue &value)
{
    return std::visit(TypeName(), value);
}

QByteArray defaultsText(const DefaultsValue &value)
{
    return std::visit(Printed(), value);
}

Result<DefaultsValue, DefaultsFormError> parseDefaultsValue(const QString &type, const QString &text)
{
    for (const Form &form : forms) {
        if (type != form.type)
            continue;
        if (const Parsed value = form.parse(text))
            return *value;
        return DefaultsFormError{false, QStringLiteral("The value is not %1.").arg(QLatin1StringView(form.expected))};
    }
    return DefaultsFormError{
        true, QStringLiteral("There is no such type; it is one of bool, int, double, string, data, date, strings.")};
}

} // namespace orvelle
