#pragma once

#include "ui/notes/NoteDocument.h"

#include <QWidget>

namespace orvelle {

class NoteFormatBar;
class NoteLinkBar;
class NoteTitleBarView;
class NoticeBar;
class RichTextEdit;

/// Title bar, format bar, notices and text of one note.
class QuickNoteEditorView : public QWidget
{
    Q_OBJECT

public:
    QuickNoteEditorView(const NoteEditorServices &services, const LinkItem &note, QWidget *parent = nullptr);

    NoteDocument &document() { return m_document; }
    /// Stores the name and the text for the last time, whatever state they are in.
    void finish();

private:
    void layOut();
    void fill();
    void connectText();
    void connectDocument();
    void editLink();
    void openLink(const QString &address);
    void showState();
    void showConflict();

    NoteEditorServices m_services;
    RichTextEdit *m_text;
    NoteDocument m_document;
    NoteTitleBarView *m_title;
    NoteFormatBar *m_format;
    NoteLinkBar *m_link;
    NoticeBar *m_notice;
};

} // namespace orvelle
