#include "sync/ContainerSettings.h"

#include "base/Text.h"
#include "platform/UserDefaults.h"
#include "platform/Volumes.h"
#include "services/DebugModeManager.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

namespace orvelle {

namespace {

constexpr std::array<std::pair<SyncPlace::Kind, QLatin1StringView>, 3> kinds{{
    {SyncPlace::Kind::None, QLatin1StringView("none")},
    {SyncPlace::Kind::Folder, QLatin1StringView("folder")},
    {SyncPlace::Kind::WebDav, QLatin1StringView("webdav")},
}};

bool isThisMachine(const QString &host)
{
    static const QRegularExpression loopback(QStringLiteral("^(localhost|127(\\.[0-9]{1,3}){3}|::1)$"));
    return loopback.match(host).hasMatch();
}

Result<SyncPlace, SyncPlaceRefusal> validatedFolder(const QString &path)
{
    if (!QDir::isAbsolutePath(path))
        return SyncPlaceRefusal::NoFolder;
    SyncPlace place{SyncPlace::Kind::Folder};
    place.folder = QDir::cleanPath(path);
    return place;
}

Result<SyncPlace, SyncPlaceRefusal> validatedServer(const QUrl &server, const QString &user)
{
    const QString scheme = server.scheme();
    if (!server.isValid() || server.host().isEmpty() || (scheme != u"https" && scheme != u"http"))
        return SyncPlaceRefusal::NoServer;
    if (!server.userInfo().isEmpty())
        return SyncPlaceRefusal::SecretInServer;
    if (scheme != u"https" && !isThisMachine(server.host()))
        return SyncPlaceRefusal::InsecureServer;
    if (user.isEmpty())
        return SyncPlaceRefusal::NoUser;
    SyncPlace place{SyncPlace::Kind::WebDav};
    place.server = server.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::NormalizePathSegments);
    if (!place.server.path().endsWith(u'/'))
        place.server.setPath(place.server.path() + u'/');
    place.user = user;
    return place;
}

} // namespace

QString rawValue(SyncPlace::Kind kind)
{
    return kinds.at(static_cast<std::size_t>(kind)).second;
}

QString syncPlaceRefusalText(SyncPlaceRefusal refusal)
{
    switch (refusal) {
    case SyncPlaceRefusal::NoFolder:
        return text("cloudSync.refused.noFolder"_text);
    case SyncPlaceRefusal::NotAFolder:
        return text("cloudSync.refused.notAFolder"_text);
    case SyncPlaceRefusal::NoServer:
        return text("cloudSync.refused.noServer"_text);
    case SyncPlaceRefusal::InsecureServer:
        return text("cloudSync.refused.insecure"_text);
    case SyncPlaceRefusal::SecretInServer:
        return text("cloudSync.refused.secretInAddress"_text);
    case SyncPlaceRefusal::NoUser:
        return text("cloudSync.refused.noUser"_text);
    }
    Q_UNREACHABLE();
}

Result<SyncPlace, SyncPlaceRefusal> validatedSyncPlace(const SyncPlace &place)
{
    switch (place.kind) {
    case SyncPlace::Kind::None:
        return SyncPlace();
    case SyncPlace::Kind::Folder:
        return validatedFolder(place.folder);
    case SyncPlace::Kind::WebDav:
        return validatedServer(place.server, place.user.trimmed());
    }
    Q_UNREACHABLE();
}

Result<SyncPlace, SyncPlaceRefusal> presentSyncPlace(const SyncPlace &place, const Volumes &volumes)
{
    auto valid = validatedSyncPlace(place);
    if (!valid || valid->kind != SyncPlace::Kind::Folder || !volumes.distantVolumeHolding(valid->folder).isEmpty())
        return valid;
    return QFileInfo(valid->folder).isDir() ? valid : SyncPlaceRefusal::NotAFolder;
}

QUrl serverFromText(const QString &typed)
{
    const QString address = typed.trimmed();
    if (address.isEmpty() || address.contains(QStringLiteral("://")))
        return QUrl(address, QUrl::StrictMode);
    return QUrl(QStringLiteral("https://") + address, QUrl::StrictMode);
}

SyncPlace ContainerSettings::place() const
{
    return placeUnder([this](const QString &baseKey) { return m_debugMode.key(baseKey); });
}

SyncPlace ContainerSettings::placeOfOtherMode() const
{
    const QString prefix = m_debugMode.isDebugMode() ? QString() : DebugModeManager::debugPrefix();
    return placeUnder([&prefix](const QString &baseKey) { return prefix + baseKey; });
}

SyncPlace ContainerSettings::placeUnder(const std::function<QString(const QString &)> &key) const
{
    const auto stored = [&](const QString &baseKey) {
        return m_defaults.get<QString>(key(baseKey)).value_or(QString());
    };
    const QString name = stored(kindBaseKey());
    const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](const auto &each) { return each.second == name; });
    if (kind == kinds.end())
        return {};
    const auto valid = validatedSyncPlace(
        {kind->first, stored(folderBaseKey()), QUrl(stored(serverBaseKey()), QUrl::StrictMode), stored(userBaseKey())});
    return valid ? *valid : SyncPlace();
}

bool ContainerSettings::setPlace(const SyncPlace &place)
{
    // The kind last: it makes the others count.
    const std::pair<QString, QString> values[] = {{folderBaseKey(), place.folder},
                                                  {serverBaseKey(), place.server.toString(QUrl::FullyEncoded)},
                                                  {userBaseKey(), place.user},
                                                  {kindBaseKey(), rawValue(place.kind)}};
    return std::all_of(std::begin(values), std::end(values), [this](const auto &each) {
        const QString key = m_debugMode.key(each.first);
        return (each.second.isEmpty() ? m_defaults.remove(key) : m_defaults.write(key, each.second)).hasValue();
    });
}

bool ContainerSettings::concerns(const QStringList &keys) const
{
    const QString bases[] = {kindBaseKey(), folderBaseKey(), serverBaseKey(), userBaseKey()};
    return std::any_of(std::begin(bases), std::end(bases),
                       [&](const QString &base) { return keys.contains(m_debugMode.key(base)); });
}

} // namespace orvelle
