#pragma once

#include <QHash>
#include <QPointer>
#include <QString>
#include <QUuid>

#include <functional>

class QUrl;
class QWidget;

namespace orvelle {

class Clock;
class DebugModeManager;
class LinkStore;
class NoteEditorWindow;
class Notifications;
class UserDefaults;

/// What a note editor works on. All of it outlives the editors.
struct NoteEditorServices {
    LinkStore &links;
    UserDefaults &defaults; ///< remembers where a note's window stood
    Notifications &notifications;
    Clock &clock;
    DebugModeManager &debugMode;
    std::function<bool(const QUrl &)> openLink; ///< false when it leads nowhere
};

/// The open note editors: several notes at once, one window per note.
class NoteEditors
{
public:
    explicit NoteEditors(const NoteEditorServices &services);
    /// Saves and closes every editor.
    ~NoteEditors();
    NoteEditors(const NoteEditors &) = delete;
    NoteEditors &operator=(const NoteEditors &) = delete;

    /// Opens the note or brings its window to the front. Null for an id that
    /// is no note.
    NoteEditorWindow *open(const QUuid &noteId);
    /// Stores what has been typed and not yet saved, also beside another text
    /// that came from elsewhere; for the end of the session.
    void finishAll();

private:
    void moveClear(QWidget &window) const;

    NoteEditorServices m_services;
    QHash<QString, QPointer<NoteEditorWindow>> m_windows; ///< by stable id
};

} // namespace orvelle
