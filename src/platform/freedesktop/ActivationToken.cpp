#include "platform/freedesktop/ActivationToken.h"

#include <algorithm>

namespace orvelle {

bool takeActivationToken(const QString &token)
{
    constexpr qsizetype longestToken = 512;
    const bool printable = std::ranges::all_of(token, [](QChar c) { return c > u' ' && c < QChar(0x7f); });
    if (token.isEmpty() || token.size() > longestToken || !printable)
        return false;
    qputenv("XDG_ACTIVATION_TOKEN", token.toLatin1());
    return true;
}

} // namespace orvelle
