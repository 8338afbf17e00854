#include "links/exchange/LinkFiles.h"

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

/// Any bytes as each kind of link file; what comes out is an address or not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    for (const char *suffix : {"desktop", "url", "webloc"}) {
        const auto content = parseLinkFile(bytes, QString::fromLatin1(suffix));
        const auto address = content ? usableAddress(content->address) : std::nullopt;
        if (address && (usableAddress(*address) != address || foreignLink(content->name, *address, {}).name.isEmpty()))
            std::abort();
    }
    return 0;
}
