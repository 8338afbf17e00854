#pragma once

#include <QByteArray>
#include <QStringList>

namespace orvelle {

class DebugModeManager;
class UserDefaults;

/// How the list of links looked when the settings were open last. Keys:
/// "SettingsOpenGroups" (stable ids, through debug mode, as another tree has
/// other groups) and "SettingsLinksSplitter" (the toolkit's own bytes).
class LinkWindowState
{
public:
    /// Both outlive this.
    LinkWindowState(UserDefaults &defaults, const DebugModeManager &debugMode);

    QStringList openGroups() const;
    QByteArray splitter() const;
    void keepOpenGroups(const QStringList &stableIds);
    void keepSplitter(const QByteArray &state);

private:
    UserDefaults &m_defaults;
    const DebugModeManager &m_debugMode;
};

} // namespace orvelle
