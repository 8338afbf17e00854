#include "links/SnapshotStore.h"

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

/// Any bytes may lie in the snapshot folder, under any name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr qsizetype maxBytes = 16 << 20;
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const auto name = snapshotInfo(QString::fromUtf8(bytes));
    if (name && name->name.contains(u'/'))
        std::abort();
    const auto links = unpackSnapshot(bytes, maxBytes);
    if (!links)
        return 0;
    const auto packed = packSnapshot(*links);
    if (!packed || !unpackSnapshot(*packed))
        std::abort();
    return 0;
}
