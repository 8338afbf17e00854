#include "services/UpdateInfo.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace orvelle;

/// What is taken from a manifest can be shown and opened, and versions have an
/// order.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (const auto info = decodeUpdateInfo(bytes)) {
        const bool isSafe = info->url.scheme() == QStringLiteral("https") && !info->url.host().isEmpty() &&
                            info->url.userInfo().isEmpty();
        if (!isSafe || info->version.size() > UpdateInfo::maxTextLength ||
            compareVersions(info->version, info->version))
            std::abort();
    }
    const QString text = QString::fromUtf8(bytes);
    const QStringView left = QStringView(text).first(text.size() / 2);
    const QStringView right = QStringView(text).sliced(text.size() / 2);
    const int order = compareVersions(left, right);
    if ((order > 0) != (compareVersions(right, left) < 0) || (order == 0) != (compareVersions(right, left) == 0))
        std::abort();
    return 0;
}
