#include "links/LinkCodec.h"

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

/// A tree that decodes comes back unchanged from its own stored form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto links = decodeLinks(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!links)
        return 0;
    const auto again = decodeLinks(encodeLinks(*links));
    if (!again || *again != *links)
        std::abort();
    return 0;
}
