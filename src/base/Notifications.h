#pragma once

#include <QObject>
#include <QUuid>

namespace orvelle {

/// The application-wide announcements, one signal per name. Emitted on the
/// main thread, after the state is consistent, and not when nothing changed.
/// There is one object, a member of the application, handed to whoever posts
/// or observes.
class Notifications : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    void openQuickAdd();
    void openNoteEditor(const QUuid &noteId);
    void openAppSettings();
    void openTimerCustom();
    void menuletIconChanged();
    void globalShortcutChanged();
    void globalShortcutFired();
    void shortcutRecordingChanged(bool recording);
    void generalSettingsChanged();
    void noteColorChanged(const QUuid &noteId);
    void syncableSettingsChanged();
    void quickLaunchChanged();
    void widgetOrderChanged();
    void debugModeChanged();
    void weatherChanged();
    void systemInfoChanged();
    void networkChanged();
    void clipboardChanged();
    void calendarChanged();
    void timerChanged();
    /// What CloudSync::status() or heldBack() gives is another now.
    void syncStatusChanged();
    /// An upload failed; the change is kept and tried again.
    void syncUploadFailed();
};

} // namespace orvelle
