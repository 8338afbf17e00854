#pragma once

#include "links/LinkItem.h"
#include "ui/notes/NoteContent.h"
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
    /// from the stored text although nothing was typed (line ends, formatting
    /// that no note has), which does not count as a change: what is stored then
    /// stays as it is, to the byte.
    NoteDocument(const NoteEditorServices &services, const LinkItem &note, std::function<RichText()> editorText);
    ~NoteDocument() override;

    const LinkItem &note() const { return m_note; }
    NoteContent::Decoded storedText() const { return m_stored.decoded(); }
    State state() const { return m_state; }

    /// Called after the editor was filled with storedText().
    void editorFilled();
    /// Called at each change in the editor; saves half a second after the last.
    void textEdited();
    /// Stores what was typed or formatted, in both forms, and sets
    /// contentModifiedAt. Nothing happens when it is what was there.
    void save();
    void resolve(Choice choice);
    /// Puts a removed note back, at the end of the top level.
    void addAgain();
    /// The editor goes away: stores what was typed, whatever the state.
    void close();

signals:
    /// The editor has to show this text; the user may undo it there.
    void replaceText(const orvelle::RichText &text);
    /// The text was changed elsewhere and has been shown by replaceText().
    void changedElsewhere();
    void stateChanged();
    /// Name or colour may be others now.
    void noteChanged();

private:
    void storeChanged();
    void takeStored(const NoteContent &stored);
    bool hasTyped() const;
    void setState(State state);

    NoteEditorServices m_services;
    LinkItem m_note;
    std::function<RichText()> m_editorText;
    NoteContent m_stored; ///< what the editor's text descends from
    RichText m_shown;     ///< that text as the editor shows it
    NoteContent m_theirs; ///< in State::Conflict: what came from elsewhere
    State m_state = State::Normal;
    bool m_saving = false;
    std::unique_ptr<Timer> m_timer;
};

} // namespace orvelle
