#include "base/JsonReader.h"

#include "base/Text.h"

#include <simdjson.h>

#include <bit>

namespace orvelle {

namespace dom = simdjson::dom;

namespace {

static_assert(sizeof(JsonValue) == sizeof(dom::element));

/// The parser counts an empty innermost container one level less than any
/// other, so it is given one level more and this settles the rest.
bool isWithinDepth(const dom::element &element, std::size_t levelsLeft)
{
    dom::array array;
    dom::object object;
    if (element.get(array) == simdjson::SUCCESS) {
        if (levelsLeft == 0)
            return false;
        for (const dom::element child : array) {
            if (!isWithinDepth(child, levelsLeft - 1))
                return false;
        }
    } else if (element.get(object) == simdjson::SUCCESS) {
        if (levelsLeft == 0)
            return false;
        for (const auto field : object) {
            if (!isWithinDepth(field.value, levelsLeft - 1))
                return false;
        }
    }
    return true;
}

simdjson::error_code parseInto(dom::document &document, QByteArrayView bytes, bool padded, std::size_t maxDepth,
                               dom::element &root)
{
    // The parser's work space is several times the text, so it does not
    // outlive this call; the document holds only the result.
    dom::parser parser;
    if (const auto error = parser.allocate(0, maxDepth))
        return error;
    const char *text = bytes.data() ? bytes.data() : ""; // never null for the parser
    const auto size = static_cast<std::size_t>(bytes.size());
    return parser.parse_into_document(document, text, size, !padded).get(root);
}

} // namespace

struct JsonDocument::Private {
    dom::document document;
    dom::element root;
};

JsonDocument::JsonDocument(std::unique_ptr<Private> data) : d(std::move(data)) {}
JsonDocument::JsonDocument(JsonDocument &&) noexcept = default;
JsonDocument &JsonDocument::operator=(JsonDocument &&) noexcept = default;
JsonDocument::~JsonDocument() = default;

static_assert(JsonDocument::padding >= simdjson::SIMDJSON_PADDING);

Result<JsonDocument, JsonError> JsonDocument::parse(QByteArrayView bytes)
{
    return parse(bytes, false);
}

Result<JsonDocument, JsonError> JsonDocument::parseInPlace(const QByteArray &bytes)
{
    // Not its capacity, part of which may lie before the text: where something
    // was taken from its beginning. The copy shares the bytes.
    QByteArray held = bytes;
    return parse(bytes, held.data_ptr().freeSpaceAtEnd() >= padding);
}

Result<JsonDocument, JsonError> JsonDocument::parse(QByteArrayView bytes, bool padded)
{
    auto parsed = std::make_unique<Private>();
    auto error = parseInto(parsed->document, bytes, padded, maxDepth, parsed->root);
    if (error == simdjson::DEPTH_ERROR) {
        error = parseInto(parsed->document, bytes, padded, maxDepth + 1, parsed->root);
        if (error == simdjson::SUCCESS && !isWithinDepth(parsed->root, maxDepth))
            error = simdjson::DEPTH_ERROR;
    }
    if (error != simdjson::SUCCESS)
        return JsonError{QString::fromUtf8(simdjson::error_message(error)), error == simdjson::DEPTH_ERROR};
    return JsonDocument(std::move(parsed));
}

JsonValue JsonDocument::root() const
{
    return std::bit_cast<JsonValue>(d->root);
}

template<typename T>
static std::optional<T> typed(const JsonValue &value)
{
    if (value.isNull())
        return std::nullopt;
    T result;
    if (std::bit_cast<dom::element>(value).get(result) != simdjson::SUCCESS)
        return std::nullopt;
    return result;
}

bool JsonValue::isNull() const
{
    return !m_document || std::bit_cast<dom::element>(*this).is_null();
}

bool JsonValue::isObject() const
{
    return m_document && std::bit_cast<dom::element>(*this).is_object();
}

bool JsonValue::isArray() const
{
    return m_document && std::bit_cast<dom::element>(*this).is_array();
}

std::optional<std::string_view> JsonValue::asString() const
{
    return typed<std::string_view>(*this);
}

std::optional<bool> JsonValue::asBool() const
{
    return typed<bool>(*this);
}

std::optional<double> JsonValue::asDouble() const
{
    return typed<double>(*this);
}

std::optional<qint64> JsonValue::asInt() const
{
    if (const auto value = typed<std::int64_t>(*this))
        return *value;
    return std::nullopt;
}

bool JsonValue::forEachMember(const std::function<bool(std::string_view, JsonValue)> &visit) const
{
    const auto object = typed<dom::object>(*this);
    if (!object)
        return false;
    for (const auto field : *object) {
        if (!visit(field.key, std::bit_cast<JsonValue>(field.value)))
            return false;
    }
    return true;
}

bool JsonValue::forEachElement(const std::function<bool(JsonValue)> &visit) const
{
    const auto array = typed<dom::array>(*this);
    if (!array)
        return false;
    for (const dom::element element : *array) {
        if (!visit(std::bit_cast<JsonValue>(element)))
            return false;
    }
    return true;
}

qsizetype JsonValue::size() const
{
    const auto array = typed<dom::array>(*this);
    if (!array)
        return 0;
    // The count kept in the tape saturates; beyond that the elements tell.
    constexpr std::size_t saturated = 0xFFFFFF;
    std::size_t count = array->size();
    if (count >= saturated)
        count = static_cast<std::size_t>(std::distance(array->begin(), array->end()));
    return static_cast<qsizetype>(count);
}

std::optional<JsonValue> JsonValue::member(std::string_view key) const
{
    std::optional<JsonValue> found;
    forEachMember([&](std::string_view name, JsonValue value) {
        if (name == key && !value.isNull())
            found = value;
        return !found;
    });
    return found;
}

std::optional<QString> jsonText(const std::optional<JsonValue> &value)
{
    const auto utf8 = value ? value->asString() : std::nullopt;
    if (!utf8)
        return std::nullopt;
    return textFromUtf8(*utf8);
}

} // namespace orvelle
