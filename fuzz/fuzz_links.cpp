#include "base/JsonReader.h"
#include "links/LinkCodec.h"

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

/// A tree that decodes comes back unchanged from its own stored form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // With and without the room that lets the text be parsed where it is.
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(size) + (size % 2 == 0 ? JsonDocument::padding : 0));
    bytes.append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto links = decodeLinks(bytes);
    if (!links)
        return 0;
    const auto again = decodeLinks(encodeLinks(*links));
    if (!again || *again != *links)
        std::abort();
    return 0;
}
