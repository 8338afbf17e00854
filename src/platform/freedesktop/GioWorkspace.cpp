#include "platform/freedesktop/GioWorkspace.h"

#include "base/AddressSchemes.h"
#include "platform/freedesktop/ActivationToken.h"
#include "platform/freedesktop/GioLaunch.h"
#include "platform/freedesktop/x11/StartupNotice.h"
#include "platform/freedesktop/x11/WindowFocus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QUrl>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcWorkspace, "Workspace", QtInfoMsg)

namespace {

constexpr int fileManagerTimeoutMs = 10'000; // it may have to be started first
constexpr int mostLaunchers = 4;             ///< one dead network disk must not stop the others

/// A file of another machine does not exist here. Those who open such an address
/// overlook the host and take the file of that name on this one.
bool isHere(const QUrl &fileUrl)
{
    const QString host = fileUrl.host();
    return host.isEmpty() || host == u"localhost" ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

bool mayBeOpened(const QUrl &url)
{
    if (!url.isValid() || url.scheme().isEmpty() || isCodeScheme(url.scheme()))
        return false;
    // A zero byte would end the path early for everybody who opens it.
    return url.scheme() != u"file" || (isHere(url) && !url.path(QUrl::FullyDecoded).contains(QChar(0)));
}

/// Logs the failure only: what was opened is nobody's business.
void reportFailure(const char *what, const QString &failure)
{
    if (!failure.isEmpty())
        qCWarning(lcWorkspace).noquote() << what << "could not be opened";
}

} // namespace

GioWorkspace::GioWorkspace(const QDBusConnection &sessionBus)
    : m_bus(sessionBus), m_launchers(mostLaunchers), m_focus(std::make_unique<WindowFocus>())
{
}

GioWorkspace::~GioWorkspace() = default;

bool GioWorkspace::openUrl(const QUrl &url)
{
    if (!mayBeOpened(url))
        return false;
    m_launchers.run([encoded = url.toEncoded(), notice = std::make_shared<StartupNotice>()] {
        reportFailure("an address", gio::openAddress(encoded, *notice));
    });
    return true;
}

bool GioWorkspace::openFile(const QString &path)
{
    if (!QDir::isAbsolutePath(path))
        return false;
    m_launchers.run(
        [path, notice = std::make_shared<StartupNotice>()] { reportFailure("a file", gio::openFile(path, *notice)); });
    return true;
}

bool GioWorkspace::showFolder(const QString &path)
{
    if (!QDir::isAbsolutePath(path))
        return false;
    askFileManager(u"ShowFolders"_s, path, path);
    return true;
}

bool GioWorkspace::reveal(const QString &path)
{
    if (!QDir::isAbsolutePath(path))
        return false;
    askFileManager(u"ShowItems"_s, path, QFileInfo(path).absolutePath());
    return true;
}

void GioWorkspace::askFileManager(const QString &method, const QString &path, const QString &fallbackFolder)
{
    const auto openByEntry = [this, fallbackFolder] {
        m_launchers.run([fallbackFolder, notice = std::make_shared<StartupNotice>()] {
            reportFailure("a folder", gio::openFolder(fallbackFolder, *notice));
        });
    };
    if (!m_bus.isConnected()) {
        openByEntry();
        return;
    }
    const QString uri = QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
    const auto call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, method)
        << QStringList(uri) << QString::fromLatin1(spendActivationToken());
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call, fileManagerTimeoutMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [pending, openByEntry] {
        pending->deleteLater();
        // One that is only slow to answer will still show its window.
        if (pending->isError() && pending->error().type() != QDBusError::NoReply)
            openByEntry();
    });
}

WindowToken GioWorkspace::focusedWindow() const
{
    return m_focus->focused();
}

void GioWorkspace::focusWindow(WindowToken window)
{
    m_focus->give(window);
}

} // namespace orvelle
