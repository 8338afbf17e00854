#pragma once

#include "links/LinkItem.h"
#include "ui/notes/NoteEditors.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace orvelle {

class Timer;

/// One note between its editor and the store: when to save, and what to do
/// when the note changes elsewhere (another window, an undo, another process)
/// while it is open. What the user has typed is never replaced, and what came
/// from elsewhere is never written over unasked.
class NoteDocument : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Normal,
        Conflict, ///< typed here and changed elsewhere; nothing is saved until resolve()
        Gone,     ///< no longer in the tree; nothing is saved until addAgain()
    };
    enum class Choice { KeepBoth, KeepMine, UseTheirs };

    static constexpr std::chrono::milliseconds saveDelay{500};

    /// `editorText` gives the text as the editor shows it now. It may differ
    /// from the stored text although nothing was typed (line ends), which
    /// does not count as a change.
    NoteDocument(const NoteEditorServices &services, const LinkItem &note, std::function<QString()> editorText);
    ~NoteDocument() override;

    const LinkItem &note() const { return m_note; }
    QString storedText() const { return m_stored; }
    State state() const { return m_state; }

    /// Called after the editor was filled with storedText().
    void editorFilled();
    /// Called at each change in the editor; saves half a second after the last.
    void textEdited();
    /// Stores what was typed. Sets contentModifiedAt, and removes the rich
    /// text: it says what the note said before.
    void save();
    void resolve(Choice choice);
    /// Puts a removed note back, at the end of the top level.
    void addAgain();
    /// The editor goes away: stores what was typed, whatever the state.
    void close();

signals:
    /// The editor has to show this text; the user may undo it there.
    void replaceText(const QString &text);
    /// The text was changed elsewhere and has been shown by replaceText().
    void changedElsewhere();
    void stateChanged();
    /// Name or colour may be others now.
    void noteChanged();

private:
    void storeChanged();
    void takeStoredText(const QString &stored);
    bool hasTyped() const;
    void setState(State state);

    NoteEditorServices m_services;
    LinkItem m_note;
    std::function<QString()> m_editorText;
    QString m_stored; ///< the text the editor's text descends from
    QString m_shown;  ///< that text as the editor shows it
    QString m_theirs; ///< in State::Conflict: the text from elsewhere
    State m_state = State::Normal;
    bool m_saving = false;
    std::unique_ptr<Timer> m_timer;
};

} // namespace orvelle
