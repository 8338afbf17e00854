#include "base/JsonReader.h"
#include "base/JsonWriter.h"

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

namespace {

void copy(JsonWriter &writer, JsonValue value)
{
    if (value.isObject()) {
        writer.beginObject();
        value.forEachMember([&writer](std::string_view, JsonValue member) {
            writer.key("k");
            copy(writer, member);
            return true;
        });
        writer.endObject();
    } else if (value.isArray()) {
        writer.beginArray();
        value.forEachElement([&writer](JsonValue element) {
            copy(writer, element);
            return true;
        });
        writer.endArray();
    } else if (const auto text = jsonText(value)) {
        writer.string(*text);
    } else if (const auto flag = value.asBool()) {
        writer.boolean(*flag);
    } else if (const auto whole = value.asInt()) {
        writer.number(*whole);
    } else if (const auto number = value.asDouble()) {
        writer.number(*number);
    } else {
        writer.null();
    }
}

} // namespace

/// What was read can be written, and what was written reads as the same again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto document = JsonDocument::parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!document)
        return 0;
    JsonWriter first;
    copy(first, document->root());
    const QByteArray text = first.take();
    const auto again = JsonDocument::parse(text);
    if (!again)
        std::abort();
    JsonWriter second;
    copy(second, again->root());
    if (second.take() != text)
        std::abort();
    return 0;
}
