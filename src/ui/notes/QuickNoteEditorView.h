#pragma once

#include "ui/notes/NoteDocument.h"

#include <QWidget>

class QPlainTextEdit;

namespace orvelle {

class NoteTitleBarView;
class NoticeBar;

/// Title bar, notices and text of one note.
class QuickNoteEditorView : public QWidget
{
    Q_OBJECT

public:
    QuickNoteEditorView(const NoteEditorServices &services, const LinkItem &note, QWidget *parent = nullptr);

    NoteDocument &document() { return m_document; }
    /// Stores the name and the text typed so far.
    void saveNow();
    /// The same for the last time.
    void finish();

private:
    QString editorText() const;
    void replaceText(const QString &text);
    void showState();
    void showConflict();

    QPlainTextEdit *m_text;
    NoteDocument m_document;
    NoteTitleBarView *m_title;
    NoticeBar *m_notice;
};

} // namespace orvelle
