#include "services/UpdateManager.h"

#include "base/HostAddress.h"
#include "base/Text.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <QLoggingCategory>
#include <QPointer>

#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcUpdate, "UpdateManager", QtInfoMsg)

constexpr auto autoCheckKey = "UpdateAutoCheckEnabled"_L1;
constexpr auto lastCheckKey = "UpdateLastCheckDate"_L1;
constexpr auto skippedKey = "UpdateSkippedVersion"_L1;
constexpr auto hostKey = "UpdateServiceHost"_L1;
constexpr auto manifestPath = "/orvelle/app/version.json"_L1;

bool isThisMachine(const QString &host)
{
    return host == u"localhost" || host == u"127.0.0.1" || host == u"::1";
}

QUrl safeHostAddress(const QString &setting)
{
    const QUrl url = hostAddress(setting);
    return url.scheme() == u"https" || isThisMachine(url.host()) ? url : QUrl();
}

QString reasonFor(const HttpError &error)
{
    switch (error.kind) {
    case HttpError::Kind::TimedOut:
        return text("update.error.timedOut"_text);
    case HttpError::Kind::TooLarge:
        return text("update.error.manifest"_text);
    case HttpError::Kind::Refused:
    case HttpError::Kind::Unreachable:
    case HttpError::Kind::BadRedirect:
    case HttpError::Kind::Tls:
    case HttpError::Kind::Authentication:
    case HttpError::Kind::Protocol:
        return text("update.error.network"_text);
    }
    Q_UNREACHABLE();
}

} // namespace

UpdateManager::UpdateManager(const Services &services, const Installed &installed, QObject *parent)
    : QObject(parent), m_services(services), m_installed(installed)
{
    connect(&services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        const std::array ours{autoCheckKey, lastCheckKey, skippedKey, hostKey};
        if (std::any_of(ours.begin(), ours.end(), [&keys](QLatin1StringView key) { return keys.contains(key); }))
            emit changed();
    });
}

UpdateManager::~UpdateManager() = default;

bool UpdateManager::autoCheckEnabled() const
{
    return m_services.defaults.get<bool>(autoCheckKey).value_or(true);
}

void UpdateManager::setAutoCheckEnabled(bool enabled)
{
    if (enabled == autoCheckEnabled())
        return;
    // What could not be written is told by whoever shows such failures; the
    // switch then falls back.
    static_cast<void>(m_services.defaults.write(autoCheckKey, enabled));
    emit changed();
}

std::optional<Timestamp> UpdateManager::lastCheckDate() const
{
    return m_services.defaults.get<Timestamp>(lastCheckKey);
}

std::optional<QString> UpdateManager::skippedVersion() const
{
    return m_services.defaults.get<QString>(skippedKey);
}

QUrl UpdateManager::manifestUrl() const
{
    QUrl url = safeHostAddress(m_services.defaults.get<QString>(hostKey).value_or(QString()));
    if (url.isEmpty())
        url = safeHostAddress(m_installed.host);
    if (!url.isEmpty())
        url.setPath(manifestPath);
    return url;
}

QString UpdateManager::serviceHost() const
{
    return manifestUrl().authority();
}

void UpdateManager::checkForUpdatesIfNeeded()
{
    if (!autoCheckEnabled())
        return;
    if (serviceHost().isEmpty()) {
        qCInfo(lcUpdate, "No host is set that could be asked for updates");
        return;
    }
    // A date to come is that of a clock that was wrong; it holds nothing up.
    const auto last = lastCheckDate();
    const double age = last ? m_services.clock.now() - *last : checkInterval;
    if (age >= 0 && age < checkInterval)
        return;
    checkForUpdates(false);
}

void UpdateManager::checkForUpdates(bool manually)
{
    m_manually = manually || (isChecking() && m_manually);
    if (isChecking())
        return;
    HttpRequest request;
    request.url = manifestUrl();
    if (request.url.isEmpty()) {
        fail(text("update.error.noHost"_text), manually);
        return;
    }
    request.headers = {{"Accept", "application/json"}};
    request.idleTimeout = timeout;
    request.totalTimeout = timeout;
    request.maxBytes = UpdateInfo::maxManifestBytes;
    m_call = m_services.http.send(request, [this](const auto &answer) { receive(answer); });
    emit changed();
}

void UpdateManager::receive(const Result<HttpResponse, HttpError> &answer)
{
    // Kept until the end of this call, which it may be running in.
    const auto call = std::move(m_call);
    const bool manually = std::exchange(m_manually, false);
    if (!answer)
        fail(reasonFor(answer.error()), manually);
    else if (answer->status < 200 || answer->status > 299)
        fail(text("update.error.status %@"_text, QString::number(answer->status)), manually);
    else if (const auto remote = decodeUpdateInfo(answer->body))
        accept(*remote, manually);
    else
        fail(text("update.error.manifest"_text), manually);
    emit changed();
}

void UpdateManager::accept(const UpdateInfo &remote, bool manually)
{
    // Not stored, the next start asks again; that is all.
    static_cast<void>(m_services.defaults.write(lastCheckKey, m_services.clock.now()));
    if (isNewer(remote)) {
        m_available = remote;
        if (manually || skippedVersion() != remote.version)
            presentUpdateAlert(remote, manually);
    } else if (manually) {
        presentUpToDateAlert();
    }
}

void UpdateManager::fail(const QString &reason, bool manually)
{
    qCWarning(lcUpdate).noquote() << "Update check failed:" << reason;
    if (manually)
        presentErrorAlert(reason);
}

bool UpdateManager::isNewer(const UpdateInfo &remote) const
{
    const int order = compareVersions(remote.version, currentVersion());
    return order != 0 ? order > 0 : compareVersions(remote.build, currentBuild()) > 0;
}

QString UpdateManager::displayVersion(const QString &version, const QString &build)
{
    return version + u" ("_s + build + u')';
}

void UpdateManager::openDownloadPage()
{
    if (m_available)
        m_services.workspace.openUrl(m_available->url);
}

void UpdateManager::presentUpdateAlert(const UpdateInfo &info, bool manually)
{
    qCInfo(lcUpdate, "A newer version is announced, %s", manually ? "as asked for" : "by the daily check");
    m_services.activateApp();
    Alert alert;
    alert.message = text("update.available.title"_text);
    alert.informativeText = text("update.available.message %@"_text, displayVersion(info.version, info.build));
    alert.buttons = {text("update.download"_text), text("update.later"_text), text("update.skip"_text)};
    alert.escapeButton = 1;
    m_services.alerts.show(alert, [self = QPointer<UpdateManager>(this), info](int button) {
        if (!self)
            return;
        if (button == 0)
            self->m_services.workspace.openUrl(info.url);
        else if (button == 2)
            static_cast<void>(self->m_services.defaults.write(skippedKey, info.version));
    });
}

void UpdateManager::presentUpToDateAlert()
{
    Alert alert;
    alert.message = text("update.upToDate.title"_text);
    alert.informativeText = text("update.upToDate.message %@"_text, displayVersion(currentVersion(), currentBuild()));
    alert.buttons = {text("sheet.ok"_text)};
    m_services.alerts.show(alert);
}

void UpdateManager::presentErrorAlert(const QString &error)
{
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = text("update.error.title"_text);
    alert.informativeText = error;
    alert.buttons = {text("sheet.ok"_text)};
    m_services.alerts.show(alert);
}

} // namespace orvelle
