#pragma once

#include "platform/LaunchAtLogin.h"

#include <QProcessEnvironment>
#include <QStringList>

namespace orvelle {

/// Where the desktop looks for what it starts at login.
struct AutostartPlaces {
    QString userFolder;         ///< $XDG_CONFIG_HOME/autostart
    QStringList systemFolders;  ///< of $XDG_CONFIG_DIRS, the first the most important
    QStringList currentDesktop; ///< $XDG_CURRENT_DESKTOP
    QString program;            ///< absolute, as it is to be started

    static AutostartPlaces ofUser();
};

/// The path under which the running program is to be started next time too:
/// the image that it was unpacked from ($APPIMAGE), else the first place in the
/// search path that leads to it (a link there survives a new version in a
/// folder of its own), else `executable` itself.
QString lastingProgramPath(const QString &executable, const QProcessEnvironment &environment);

/// The login item as an entry "org.orvelle.Orvelle.desktop" in the autostart
/// folders (freedesktop.org: Desktop Application Autostart Specification 0.5 and
/// Desktop Entry Specification 1.5).
///
/// The user's entry outranks the system's. Enabled means what a desktop would
/// make of it: not hidden, for this desktop, its program there, and not turned
/// off by the desktop's own switch (X-GNOME-Autostart-enabled and such).
/// Whatever else stands in an entry is kept. An entry that cannot be read is
/// put aside before another takes its place. Changes are atomic.
class XdgAutostart : public LaunchAtLogin
{
public:
    explicit XdgAutostart(AutostartPlaces places) : m_places(std::move(places)) {}

    Status status() const override;
    Outcome registerApplication() override;
    Outcome unregisterApplication() override;
    /// An entry whose program is gone, or is another Orvelle, gets this one.
    /// Programs of other names that exist (a script of the user's, say) stay.
    Outcome followProgram() override;

private:
    QString userEntry() const;
    QString systemEntry() const;

    AutostartPlaces m_places;
};

} // namespace orvelle
