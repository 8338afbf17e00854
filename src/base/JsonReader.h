#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace orvelle {

/// Why a text is not JSON that we accept.
struct JsonError {
    QString reason;
    bool tooDeep = false; ///< nothing else is known to be wrong with it
};

class JsonDocument;

/// A cheap handle (two words) to a value inside a JsonDocument, valid only
/// while that document lives. Strings are UTF-8 views into it and may hold
/// NUL. JSON null reads as absent everywhere.
class JsonValue
{
public:
    bool isNull() const;
    bool isObject() const;
    bool isArray() const;

    /// Absent when the value is of another type.
    std::optional<std::string_view> asString() const;
    std::optional<bool> asBool() const;
    /// Numbers with or without a fraction; finite.
    std::optional<double> asDouble() const;
    /// Whole numbers that fit 64 bits.
    std::optional<qint64> asInt() const;

    /// Calls `visit` for each member in document order, repeated keys
    /// included (callers let the first one count). Stops early, returning
    /// false, as soon as `visit` does. False for anything but an object.
    bool forEachMember(const std::function<bool(std::string_view key, JsonValue value)> &visit) const;

    /// The same for the elements of an array.
    bool forEachElement(const std::function<bool(JsonValue value)> &visit) const;

    /// Number of elements of an array (0 for anything else).
    qsizetype size() const;

    /// The first member named `key` that is not null; absent otherwise.
    std::optional<JsonValue> member(std::string_view key) const;

private:
    friend class JsonDocument;
    const void *m_document = nullptr;
    std::size_t m_index = 0;
};

/// A parsed JSON text (RFC 8259). Refused: invalid UTF-8, a lone surrogate
/// escape, nesting over 512 levels, whole numbers beyond 64 bits, numbers out
/// of a double's range, trailing text.
class JsonDocument
{
public:
    static constexpr std::size_t maxDepth = 512;

    static Result<JsonDocument, JsonError> parse(QByteArrayView bytes);
    /// The same without a copy of the text, when the array has room for
    /// `padding` bytes more than it holds.
    static Result<JsonDocument, JsonError> parseInPlace(const QByteArray &bytes);
    static constexpr qsizetype padding = 64;

    JsonDocument(JsonDocument &&) noexcept;
    JsonDocument &operator=(JsonDocument &&) noexcept;
    ~JsonDocument();

    JsonValue root() const;

private:
    struct Private;
    explicit JsonDocument(std::unique_ptr<Private> d);
    static Result<JsonDocument, JsonError> parse(QByteArrayView bytes, bool padded);
    std::unique_ptr<Private> d;
};

/// A string value as text; absent when it is missing or not a string.
std::optional<QString> jsonText(const std::optional<JsonValue> &value);

} // namespace orvelle
