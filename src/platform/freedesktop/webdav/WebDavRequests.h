#pragma once

#include "platform/CloudContainer.h"
#include "platform/HttpClient.h"

#include <QObject>
#include <QUrl>

#include <array>
#include <map>

namespace orvelle {

class Clock;
class SecretStore;
class Timer;

/// Where a WebDAV container is.
struct WebDavSettings {
    QUrl folderUrl;             ///< https, or http to this machine
    QString user;               ///< empty: no credentials are asked for or sent
    bool allowInsecure = false; ///< http to other machines as well

    friend bool operator==(const WebDavSettings &, const WebDavSettings &) = default;
};

struct WebDavRequest {
    QByteArray method;
    QString name = {}; ///< of a file in the folder; empty: the folder itself
    QList<QPair<QByteArray, QByteArray>> headers = {};
    QByteArray body = {};
    /// Statuses that say something here, though they are failures elsewhere.
    QList<int> expected = {};
};

/// Sends the requests of one container: adds the credentials, tells failures
/// from answers, and sends nothing while the server is to be left alone.
///
/// - After no answer or a status of 5xx, 408 or 429 everything pauses, for 2
///   seconds the first time and twice as long each further time, up to 5
///   minutes, of which a random half is taken off; or as long as Retry-After
///   says. 413 and 507 pause the writing alone.
/// - A name or password that was refused (401) is never sent a second time.
///   403 stops reading or writing for an hour. Both are forgotten by forgive().
/// - A keyring that stays locked is not asked again for an hour either, as it
///   may ask the user each time.
///
/// Main thread; callbacks from the event loop, and none after this is gone.
class WebDavRequests : public QObject
{
public:
    using Done = std::function<void(const Result<HttpResponse, CloudError> &)>;
    using Random = std::function<double()>; ///< from 0 to below 1

    WebDavRequests(const WebDavSettings &settings, HttpClient &http, SecretStore &secrets, Clock &clock, Random random);
    ~WebDavRequests() override;

    void send(const WebDavRequest &request, Done done);
    /// Why nothing may be written now.
    std::optional<CloudError> writesPaused() const;
    /// The user asks, or gave another password: what we decided is forgotten,
    /// but not what the server asked for.
    void forgive();

    /// Prolongs the lock every `period`, until releaseLock().
    void holdLock(const QString &name, const QByteArray &token, std::chrono::seconds period);
    void releaseLock();

    QUrl urlOf(const QString &name) const;
    Clock &clock() const { return m_clock; }

private:
    enum Part { All, Reads, Writes };
    struct Pause {
        Timestamp from = {};
        double seconds = 0;
        CloudError why = {};
        bool byServer = false;
        int failures = 0;
    };

    std::optional<CloudError> pausedBy(Part part) const;
    void pause(Part part, const CloudError &why, std::optional<std::chrono::seconds> asked = {});
    void pauseFor(Part part, const CloudError &why, double seconds);
    void findSecret(const WebDavRequest &request, Done done);
    void dispatch(const WebDavRequest &request, Done done);
    Result<HttpResponse, CloudError> judge(const WebDavRequest &request, const Result<HttpResponse, HttpError> &result);
    CloudError refuse(const WebDavRequest &request, const HttpResponse &answer, CloudError error);
    void later(Done done, const CloudError &error);

    WebDavSettings m_settings;
    HttpClient &m_http;
    SecretStore &m_secrets;
    Clock &m_clock;
    Random m_random;
    std::array<Pause, 3> m_pauses;
    std::optional<QByteArray> m_secret;
    std::optional<QByteArray> m_refusedSecret;
    std::map<quint64, std::unique_ptr<HttpCall>> m_calls;
    quint64 m_lastCall = 0;
    std::unique_ptr<Timer> m_lockTimer;
};

/// What the keyring knows the password by, with the key "webdav".
QString webDavSecretAccount(const WebDavSettings &settings);

} // namespace orvelle
