#pragma once

#include "base/Timestamp.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <string_view>

namespace orvelle {

/// Streams JSON (RFC 8259, UTF-8) in the order of the calls. Strings escape
/// only what JSON requires ("/" stays "/"); doubles are written in the
/// shortest form that reads back to the same bits. Keys must be given in the
/// order in which they are to appear; the writer sorts nothing.
class JsonWriter
{
public:
    enum class Style {
        Compact,
        Pretty, ///< indented by two spaces, `"key" : value`
    };

    explicit JsonWriter(Style style = Style::Compact);
    ~JsonWriter();
    JsonWriter(const JsonWriter &) = delete;
    JsonWriter &operator=(const JsonWriter &) = delete;

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    /// ASCII keys of our own.
    void key(std::string_view name);
    /// Keys of somebody else.
    void textKey(QStringView name);
    void string(QStringView value);
    /// ASCII text of our own without anything to escape, such as a date.
    void plainText(std::string_view value);
    void base64(QByteArrayView bytes);
    void number(qint64 value);
    /// Must be finite.
    void number(double value);
    void boolean(bool value);
    void null();

    /// What has been written so far; empties the writer.
    QByteArray take();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace orvelle
