#pragma once

#include "base/Result.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace orvelle {

class DebugModeManager;
class UserDefaults;
class Volumes;

/// Where the shared document is kept. What does not belong to the kind is
/// empty.
struct SyncPlace {
    enum class Kind { None, Folder, WebDav };
    Kind kind = Kind::None;
    QString folder = {}; ///< absolute
    QUrl server = {};    ///< the folder on the server that holds the document
    QString user = {};

    friend bool operator==(const SyncPlace &, const SyncPlace &) = default;
};
/// "none", "folder" or "webdav", as it is stored.
QString rawValue(SyncPlace::Kind kind);

/// Why a place cannot be taken.
enum class SyncPlaceRefusal {
    NoFolder,       ///< none given, or not an absolute path
    NotAFolder,     ///< there is no such folder
    NoServer,       ///< not an address of a server
    InsecureServer, ///< not https, and not this machine
    SecretInServer, ///< a name or password as part of the address
    NoUser,
};
/// One sentence for the user.
QString syncPlaceRefusalText(SyncPlaceRefusal refusal);

/// The place as it is kept: the folder's path cleaned, the address without a
/// query and ending in a slash. Does not look at the disk. Without TLS only
/// servers on this machine are taken, as anybody between could read and change
/// what is sent.
Result<SyncPlace, SyncPlaceRefusal> validatedSyncPlace(const SyncPlace &place);
/// The same for a place that is chosen now: a folder has to be there. One on a
/// volume beyond which nobody may answer is not looked at; whoever reads from
/// it will find out.
Result<SyncPlace, SyncPlaceRefusal> presentSyncPlace(const SyncPlace &place, const Volumes &volumes);

/// An address as people type it: "https://" is put before one that has no
/// scheme.
QUrl serverFromText(const QString &text);

/// The choice of the place as it is stored, apart for debug mode. A password
/// is never stored here. Main thread.
class ContainerSettings
{
public:
    ContainerSettings(UserDefaults &defaults, const DebugModeManager &debugMode)
        : m_defaults(defaults), m_debugMode(debugMode)
    {
    }

    static QString kindBaseKey() { return QStringLiteral("SyncContainer"); }
    static QString folderBaseKey() { return QStringLiteral("SyncFolder"); }
    static QString serverBaseKey() { return QStringLiteral("SyncWebDavUrl"); }
    static QString userBaseKey() { return QStringLiteral("SyncWebDavUser"); }

    /// What is stored, none when it is no place that could be taken. Does not
    /// look at the disk: a folder that is not mounted now stays the choice.
    SyncPlace place() const;
    /// The same of the mode that is not on now.
    SyncPlace placeOfOtherMode() const;
    /// False when it could not be stored; then nothing, or a place that cannot
    /// be used, is.
    bool setPlace(const SyncPlace &place);
    /// Whether one of these keys says where the document is, in this mode.
    bool concerns(const QStringList &keys) const;

private:
    SyncPlace placeUnder(const std::function<QString(const QString &)> &key) const;

    UserDefaults &m_defaults;
    const DebugModeManager &m_debugMode;
};

} // namespace orvelle
