#pragma once

#include <QUuid>

#include <optional>

namespace orvelle {

/// The application's windows, as the menu opens them. Implemented in app/ with
/// the windows of ui/; each call brings an open window of the kind to the
/// front instead of making a second one.
class AppWindows
{
public:
    virtual ~AppWindows() = default;

    virtual void openSettings() = 0;
    /// The settings at what they say of the synchronisation.
    virtual void openSyncSettings() { openSettings(); }
    virtual void openQuickAdd(const std::optional<QUuid> &preselectedGroup) = 0;
    virtual void openNoteEditor(const QUuid &noteId) = 0;
    virtual void openTimerCustom() = 0;
    /// Closes the settings window if it is open.
    virtual void closeSettings() = 0;
};

} // namespace orvelle
