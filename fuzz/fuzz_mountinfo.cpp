#include "platform/freedesktop/MountTable.h"
#include "platform/freedesktop/RemoteAddress.h"

#include <QUrl>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// An address has a scheme and a host, and no character that needs encoding.
void check(const QString &address)
{
    const bool plain = std::all_of(address.begin(), address.end(), [](QChar c) { return c > u' ' && c < u'\x7f'; });
    if (!plain || address.indexOf(QLatin1String("://")) <= 0 || address.endsWith(QLatin1Char('/')))
        std::abort();
}

} // namespace

/// The first line is a path, the rest a mount table.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype lineEnd = bytes.indexOf('\n');
    const QByteArray path = bytes.left(lineEnd);
    const auto mounts = orvelle::parseMountInfo(lineEnd < 0 ? QByteArray() : bytes.mid(lineEnd + 1));
    if (const auto volume = orvelle::remoteVolumeHolding(mounts, path))
        check(volume->remountAddress);
    if (const auto address = orvelle::addressOfVolumeFolder(path))
        check(*address);
    return 0;
}
