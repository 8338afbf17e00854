#include "base/HostAddress.h"

namespace orvelle {

using namespace Qt::StringLiterals;

QUrl hostAddress(const QString &setting)
{
    const QString trimmed = setting.trimmed();
    const QUrl url(trimmed.contains("://"_L1) ? trimmed : "https://"_L1 + trimmed, QUrl::StrictMode);
    const bool isWeb = url.scheme() == u"https" || url.scheme() == u"http";
    const bool isHost = url.isValid() && !url.host().isEmpty() && url.userInfo().isEmpty() && !url.hasQuery() &&
                        !url.hasFragment() && (url.path().isEmpty() || url.path() == u'/');
    return isWeb && isHost ? url.adjusted(QUrl::RemovePath) : QUrl();
}

} // namespace orvelle
