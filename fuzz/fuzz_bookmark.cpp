#include "platform/freedesktop/InodeFileBookmarks.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// A bookmark of any bytes leads to an absolute path or is an error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // A short search: the bytes may name a large folder.
    const orvelle::InodeFileBookmarks bookmarks(50);
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto resolved = bookmarks.resolve(bytes);
    if (resolved && !resolved->path.startsWith(QLatin1Char('/')))
        std::abort();
    return 0;
}
