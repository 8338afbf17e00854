#pragma once

#include "base/Timestamp.h"
#include "platform/HttpClient.h"
#include "services/UpdateInfo.h"

#include <QObject>

#include <functional>
#include <optional>

namespace orvelle {

class Alerts;
class Clock;
class UserDefaults;
class Workspace;

/// Looks at the maker's server, at most once a day by itself and whenever the
/// user asks, whether there is a newer version, and offers its page. It
/// downloads and installs nothing. Main thread.
///
/// Keys: "UpdateAutoCheckEnabled" (bool, true when absent), "UpdateLastCheckDate"
/// (date), "UpdateSkippedVersion" (string), and "UpdateServiceHost" (string): a
/// host, with a port if need be, that is asked over HTTPS. "http://" before it
/// is heard for this machine itself only. Without a host that can be read, and
/// without one from the maker, nothing is ever asked.
class UpdateManager : public QObject
{
    Q_OBJECT

public:
    struct Services {
        UserDefaults &defaults;
        Clock &clock;
        HttpClient &http;
        Alerts &alerts;
        Workspace &workspace;
        /// Brings the application's windows to the front.
        std::function<void()> activateApp;
    };
    /// The version that runs, and the host that its maker gave it (empty for none).
    struct Installed {
        QString version;
        QString build;
        QString host;
    };

    static constexpr std::chrono::milliseconds timeout{10000};
    static constexpr double checkInterval = 86400; ///< seconds

    UpdateManager(const Services &services, const Installed &installed, QObject *parent = nullptr);
    ~UpdateManager() override;

    bool autoCheckEnabled() const;
    void setAutoCheckEnabled(bool enabled);
    bool isChecking() const { return m_call != nullptr; }
    /// The last newer version found since the start.
    const std::optional<UpdateInfo> &availableUpdate() const { return m_available; }
    /// When a check last came to an end with an answer.
    std::optional<Timestamp> lastCheckDate() const;
    std::optional<QString> skippedVersion() const;
    QString currentVersion() const { return m_installed.version; }
    QString currentBuild() const { return m_installed.build; }
    /// The host that is asked, as it is shown; empty when there is none.
    QString serviceHost() const;

    void checkForUpdatesIfNeeded();
    /// Asked for while a check is under way, no second one is made; its outcome
    /// is then told as to somebody who asked.
    void checkForUpdates(bool manually);

    bool isNewer(const UpdateInfo &remote) const;
    /// "1.4.2 (57)"
    static QString displayVersion(const QString &version, const QString &build);
    /// Opens the page of the available version.
    void openDownloadPage();

signals:
    /// Something that can be asked for above is another.
    void changed();

private:
    QUrl manifestUrl() const;
    void receive(const Result<HttpResponse, HttpError> &answer);
    void accept(const UpdateInfo &remote, bool manually);
    void fail(const QString &reason, bool manually);
    void presentUpdateAlert(const UpdateInfo &info, bool manually);
    void presentUpToDateAlert();
    void presentErrorAlert(const QString &error);

    Services m_services;
    Installed m_installed;
    std::unique_ptr<HttpCall> m_call;
    bool m_manually = false;
    std::optional<UpdateInfo> m_available;
};

} // namespace orvelle
