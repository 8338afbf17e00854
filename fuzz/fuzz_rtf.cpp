#include "links/richtext/RtfReader.h"
#include "links/richtext/RtfWriter.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Whatever RTF reads as comes back the same once it is written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto read = orvelle::readRtf(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!read)
        return 0;
    const auto again = orvelle::readRtf(orvelle::writeRtf(read->text));
    if (!again || again->text != read->text || again->incomplete)
        std::abort();
    return 0;
}
