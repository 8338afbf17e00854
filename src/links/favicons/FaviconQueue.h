#pragma once

#include "links/favicons/FaviconSettings.h"
#include "platform/Clock.h"
#include "platform/HttpClient.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <chrono>
#include <map>

namespace orvelle {

/// Asks the icon service for the pictures of hosts: each host once, at most
/// four at a time, a host that failed not again before an hour. When the
/// service itself does not answer, everything waits that hour. Main thread.
class FaviconQueue : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t maxOutstanding = 4; ///< `faviconSemaphore`
    static constexpr std::chrono::hours pauseAfterFailure{1};

    FaviconQueue(FaviconSettings &settings, HttpClient &http, Clock &clock, QObject *parent = nullptr);

    /// Nothing happens for a host that is waiting, or has failed lately.
    void ask(const QString &host);
    /// What became of an answer; until then its host is not asked again.
    void settle(const QString &host, bool wasOfUse);
    /// Takes back every request; nothing that is on its way arrives.
    void cancelAll();
    /// Failures count no more, as for a service that was not asked before.
    void forgetFailures();

signals:
    /// 200, within the size limit; not looked at yet. Ends with settle().
    void answered(const QString &host, const QByteArray &body);

private:
    bool hasFailedLately(const QString &host) const;
    void sendNext();
    void send(const QString &host);
    void finish(const QString &host, const Result<HttpResponse, HttpError> &answer);
    void countServiceFailure();

    FaviconSettings &m_settings;
    HttpClient &m_http;
    Clock &m_clock;
    QStringList m_waiting; ///< next one first
    QSet<QString> m_asked; ///< waiting, sent or not settled
    std::map<QString, std::unique_ptr<HttpCall>> m_sent;
    QHash<QString, Timestamp> m_failures;
    int m_serviceFailures = 0; ///< in a row
    std::unique_ptr<Timer> m_pause;
};

} // namespace orvelle
