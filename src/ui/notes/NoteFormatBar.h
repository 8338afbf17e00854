#pragma once

#include <QToolBar>

class QActionGroup;

namespace orvelle {

class RichTextEdit;

/// The buttons and keys that format a note's text. They show how the text at
/// the cursor is formatted.
class NoteFormatBar : public QToolBar
{
    Q_OBJECT

public:
    /// The keys work everywhere in `parent`, which also holds the editor.
    NoteFormatBar(RichTextEdit &editor, QWidget *parent);

signals:
    void linkRequested();

private:
    enum class Command;
    struct Entry;

    void addEntry(const Entry &entry);
    void addSizes();
    void addHistory();
    void run(Command command);
    void changeSize(int by);
    void updateState();
    bool isOn(Command command) const;

    RichTextEdit &m_editor;
    QHash<Command, QAction *> m_actions;
    QActionGroup *m_sizes;
};

} // namespace orvelle
