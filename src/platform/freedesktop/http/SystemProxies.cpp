#include "platform/freedesktop/http/SystemProxies.h"

#include <QHostAddress>
#include <QPointer>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

bool isThisMachine(const QUrl &url)
{
    return url.host() == "localhost"_L1 || QHostAddress(url.host()).isLoopback();
}

QUrl originOf(const QUrl &url)
{
    return url.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

} // namespace

QList<QNetworkProxy> SystemProxies::ofSystem(const QUrl &url)
{
    return QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
}

void SystemProxies::find(const QUrl &url, QObject *context, std::function<void()> found)
{
    if (isThisMachine(url))
        return found();
    m_worker.run([this, lookup = m_lookup, url, context = QPointer(context), found = std::move(found)] {
        return [this, url, context, found, proxies = lookup(url)] {
            m_known.insert(originOf(url), new QList<QNetworkProxy>(proxies));
            if (context)
                found();
        };
    });
}

QList<QNetworkProxy> SystemProxies::known(const QUrl &url)
{
    if (isThisMachine(url))
        return {QNetworkProxy(QNetworkProxy::NoProxy)};
    if (const auto *proxies = m_known.object(originOf(url)))
        return *proxies;
    return m_lookup(url);
}

} // namespace orvelle
