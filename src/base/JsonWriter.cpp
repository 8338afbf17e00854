#include "base/JsonWriter.h"

#include <QStringEncoder>

#include <rapidjson/writer.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

namespace orvelle {

namespace {

/// Where the text grows: a byte array that is handed out whole, which
/// RapidJSON's own buffer cannot be.
class Sink
{
public:
    using Ch = char;

    void reserve(std::size_t more)
    {
        const auto needed = m_size + static_cast<qsizetype>(more);
        if (needed <= m_bytes.size())
            return;
        m_bytes.resize(std::max(needed, 2 * m_bytes.size()));
        m_data = m_bytes.data();
    }

    void putUnsafe(char c) { m_data[m_size++] = c; }

    void Put(char c)
    {
        reserve(1);
        putUnsafe(c);
    }

    void put(std::string_view bytes)
    {
        reserve(bytes.size());
        std::copy(bytes.begin(), bytes.end(), m_data + m_size);
        m_size += static_cast<qsizetype>(bytes.size());
    }

    void Flush() {}

    QByteArray take()
    {
        m_bytes.truncate(std::exchange(m_size, 0));
        m_data = nullptr;
        return std::exchange(m_bytes, {});
    }

private:
    QByteArray m_bytes;
    char *m_data = nullptr; ///< of m_bytes, without asking each time whether it is shared
    qsizetype m_size = 0;
};

// Found by RapidJSON in place of its slower defaults.
void PutReserve(Sink &sink, std::size_t count)
{
    sink.reserve(count);
}

void PutUnsafe(Sink &sink, char c)
{
    sink.putUnsafe(c);
}

/// RapidJSON's escaping; the punctuation is ours, because its own pretty
/// printer has another idea of the space around a colon.
class Emitter : public rapidjson::Writer<Sink>
{
public:
    explicit Emitter(Sink &sink) : Writer(sink) {}
    void escaped(const char *utf8, std::size_t size) { WriteString(utf8, static_cast<rapidjson::SizeType>(size)); }
};

struct Level {
    bool isEmpty = true;
};

/// The shortest digits that read back to the same bits. Plain digits only
/// where no reader takes them for an integer too big for 64 bits.
std::size_t formatDouble(double value, char *out, char *end)
{
    if (value == 0) {
        const std::string_view zero = std::signbit(value) ? "-0.0" : "0";
        return static_cast<std::size_t>(std::copy(zero.begin(), zero.end(), out) - out);
    }
    const double magnitude = std::fabs(value);
    const bool plain = magnitude >= 1e-5 && magnitude < 1e17;
    const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
    return static_cast<std::size_t>(std::to_chars(out, end, value, format).ptr - out);
}

} // namespace

struct JsonWriter::Private {
    explicit Private(Style s) : style(s), emitter(buffer) {}

    void raw(std::string_view bytes) { buffer.put(bytes); }

    void newLine()
    {
        buffer.Put('\n');
        for (std::size_t level = 0; level < levels.size(); ++level)
            buffer.put("  ");
    }

    /// What stands between the text so far and the next key or element.
    void separate()
    {
        if (afterKey) {
            afterKey = false;
            return;
        }
        if (levels.empty())
            return;
        if (!levels.back().isEmpty)
            buffer.Put(',');
        levels.back().isEmpty = false;
        if (style == Style::Pretty)
            newLine();
    }

    void begin(char bracket)
    {
        separate();
        buffer.Put(bracket);
        levels.push_back({});
    }

    void end(char bracket)
    {
        const bool wasEmpty = levels.back().isEmpty;
        levels.pop_back();
        if (style == Style::Pretty && !wasEmpty)
            newLine();
        buffer.Put(bracket);
    }

    Style style;
    Sink buffer;
    Emitter emitter;
    std::vector<Level> levels;
    std::vector<char> utf8;
    bool afterKey = false;
};

JsonWriter::JsonWriter(Style style) : d(std::make_unique<Private>(style)) {}
JsonWriter::~JsonWriter() = default;

void JsonWriter::beginObject()
{
    d->begin('{');
}

void JsonWriter::endObject()
{
    d->end('}');
}

void JsonWriter::beginArray()
{
    d->begin('[');
}

void JsonWriter::endArray()
{
    d->end(']');
}

void JsonWriter::key(std::string_view name)
{
    d->separate();
    d->buffer.Put('"');
    d->raw(name);
    d->raw(d->style == Style::Pretty ? std::string_view("\" : ") : std::string_view("\":"));
    d->afterKey = true;
}

void JsonWriter::textKey(QStringView name)
{
    string(name);
    d->raw(d->style == Style::Pretty ? std::string_view(" : ") : std::string_view(":"));
    d->afterKey = true;
}

void JsonWriter::string(QStringView value)
{
    d->separate();
    // A lone surrogate, which UTF-8 cannot hold, becomes U+FFFD here.
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    const auto room = static_cast<std::size_t>(encoder.requiredSpace(value.size()));
    if (d->utf8.size() < room)
        d->utf8.resize(room);
    const char *end = encoder.appendToBuffer(d->utf8.data(), value);
    d->emitter.escaped(d->utf8.data(), static_cast<std::size_t>(end - d->utf8.data()));
}

void JsonWriter::plainText(std::string_view value)
{
    d->separate();
    d->buffer.Put('"');
    d->raw(value);
    d->buffer.Put('"');
}

void JsonWriter::base64(QByteArrayView bytes)
{
    d->separate();
    const QByteArray text = QByteArray::fromRawData(bytes.data(), bytes.size()).toBase64();
    d->buffer.Put('"');
    d->raw({text.constData(), static_cast<std::size_t>(text.size())});
    d->buffer.Put('"');
}

void JsonWriter::number(qint64 value)
{
    d->separate();
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    d->raw({digits, static_cast<std::size_t>(end - digits)});
}

void JsonWriter::number(double value)
{
    Q_ASSERT(std::isfinite(value));
    d->separate();
    char digits[64];
    d->raw({digits, formatDouble(value, std::begin(digits), std::end(digits))});
}

void JsonWriter::boolean(bool value)
{
    d->separate();
    d->raw(value ? "true" : "false");
}

void JsonWriter::null()
{
    d->separate();
    d->raw("null");
}

QByteArray JsonWriter::take()
{
    d->levels.clear();
    d->afterKey = false;
    return d->buffer.take();
}

} // namespace orvelle
