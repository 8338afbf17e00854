#pragma once

#include "menubar/AppWindows.h"
#include "ui/notes/NoteEditors.h"
#include "ui/quickadd/QuickAddPanel.h"
#include "ui/settings/SettingsWindow.h"
#include "ui/timer/CustomTimerView.h"

#include <QPointer>

namespace orvelle {

/// The real windows, made when first asked for. Main thread.
class Windows : public AppWindows
{
public:
    /// What the windows work on; `settings.windows` is this object's own.
    struct Services {
        NoteEditorServices notes;
        QuickAddServices quickAdd;
        std::function<SettingsServices(AppWindows &)> settings;
        std::function<void(qint64 seconds)> startTimer;
    };
    explicit Windows(Services services);
    ~Windows() override;

    void openSettings() override;
    void openSyncSettings() override;
    void openQuickAdd(const std::optional<QUuid> &preselectedGroup) override;
    /// With an address filled in unless it is empty, for the top level.
    void openQuickAdd(const QString &address);
    void openNoteEditor(const QUuid &noteId) override;
    void openTimerCustom() override;
    void closeSettings() override;

    /// Stores what is being typed anywhere; at the end of the session.
    void saveTyped();
    /// Raises what is open.
    static void bringToFront();

private:
    Services m_services;
    NoteEditors m_notes;
    QPointer<SettingsWindow> m_settings;
    QPointer<QuickAddPanel> m_quickAdd;
    QPointer<CustomTimerView> m_customTimer;
};

} // namespace orvelle
