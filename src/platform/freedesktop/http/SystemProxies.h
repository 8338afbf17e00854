#pragma once

#include "platform/freedesktop/SerialWorker.h"

#include <QCache>
#include <QNetworkProxy>
#include <QUrl>

namespace orvelle {

/// Through which proxies an address is reached. Finding that out can take long
/// (desktops keep it in services and files, or have it worked out by a script
/// from the network), and the toolkit would do it on the thread that sends a
/// request; so it is done on another one beforehand. Main thread.
class SystemProxies : public QObject
{
public:
    /// Any thread; may block.
    using Lookup = std::function<QList<QNetworkProxy>(const QUrl &url)>;

    explicit SystemProxies(Lookup lookup) : m_lookup(std::move(lookup)) {}
    /// As the system says.
    static QList<QNetworkProxy> ofSystem(const QUrl &url);

    /// Calls `found` once when the proxies for that address are known: at once
    /// for this machine itself, to which no proxy leads, else from the event
    /// loop and only while `context` lives.
    void find(const QUrl &url, QObject *context, std::function<void()> found);
    /// What find() found. Looks it up, and may block, where find() was not called.
    QList<QNetworkProxy> known(const QUrl &url);

private:
    static constexpr qsizetype mostKnown = 100;

    Lookup m_lookup;
    QCache<QUrl, QList<QNetworkProxy>> m_known{mostKnown}; ///< by scheme, host and port
    SerialWorker m_worker{this};
};

} // namespace orvelle
