#include "platform/freedesktop/ActivationToken.h"

#include <algorithm>

namespace orvelle {

namespace {

constexpr char variable[] = "XDG_ACTIVATION_TOKEN";

} // namespace

bool takeActivationToken(const QString &token)
{
    constexpr qsizetype longestToken = 512;
    const bool printable = std::ranges::all_of(token, [](QChar c) { return c > u' ' && c < QChar(0x7f); });
    if (token.isEmpty() || token.size() > longestToken || !printable)
        return false;
    qputenv(variable, token.toLatin1());
    return true;
}

QByteArray spendActivationToken()
{
    const QByteArray token = qgetenv(variable);
    if (!token.isEmpty())
        qunsetenv(variable);
    return token;
}

} // namespace orvelle
