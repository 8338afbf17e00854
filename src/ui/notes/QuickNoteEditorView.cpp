#include "ui/notes/QuickNoteEditorView.h"

#include "base/Text.h"
#include "ui/common/NoticeBar.h"
#include "ui/notes/NoteTitleBarView.h"

#include <QPlainTextEdit>
#include <QTextDocument>
#include <QVBoxLayout>

namespace orvelle {

QuickNoteEditorView::QuickNoteEditorView(const NoteEditorServices &services, const LinkItem &note, QWidget *parent)
    : QWidget(parent),
      m_text(new QPlainTextEdit(this)),
      m_document(services, note, [this] { return editorText(); }),
      m_title(new NoteTitleBarView(services, note, this)),
      m_notice(new NoticeBar(this))
{
    m_text->setObjectName(QStringLiteral("noteText"));
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setPlaceholderText(text("note.placeholder"_text));
    m_text->setAccessibleName(text("note.text"_text));
    m_text->setTabChangesFocus(false);
    m_text->document()->setDocumentMargin(12);
    m_text->setPlainText(m_document.storedText());
    m_document.editorFilled();
    setFocusProxy(m_text);

    m_notice->setFlush(true);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_title);
    column->addWidget(m_notice);
    column->addWidget(m_text, 1);

    connect(m_text, &QPlainTextEdit::textChanged, &m_document, &NoteDocument::textEdited);
    connect(&m_document, &NoteDocument::replaceText, this, &QuickNoteEditorView::replaceText);
    connect(&m_document, &NoteDocument::noteChanged, this, [this] { m_title->setNote(m_document.note()); });
    connect(&m_document, &NoteDocument::stateChanged, this, &QuickNoteEditorView::showState);
    connect(&m_document, &NoteDocument::changedElsewhere, this,
            [this] { m_notice->showNotice(text("note.changedElsewhere"_text)); });
}

QString QuickNoteEditorView::editorText() const
{
    // toPlainText() would turn non-breaking spaces into plain ones.
    QString result = m_text->document()->toRawText();
    result.replace(QChar::ParagraphSeparator, u'\n');
    result.replace(QChar::LineSeparator, u'\n');
    return result;
}

void QuickNoteEditorView::replaceText(const QString &newText)
{
    // As an edit, so that undo brings the user's own text back.
    QTextCursor cursor(m_text->document());
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.insertText(newText);
    cursor.endEditBlock();
}

void QuickNoteEditorView::showState()
{
    m_title->setEditable(m_document.state() != NoteDocument::State::Gone);
    switch (m_document.state()) {
    case NoteDocument::State::Normal:
        m_notice->hide();
        break;
    case NoteDocument::State::Conflict:
        showConflict();
        break;
    case NoteDocument::State::Gone:
        m_notice->showNotice(text("note.gone"_text), {{text("note.addAgain"_text), [this] { m_document.addAgain(); }}},
                             false);
        break;
    }
}

void QuickNoteEditorView::showConflict()
{
    const auto resolve = [this](NoteDocument::Choice choice) { return [this, choice] { m_document.resolve(choice); }; };
    m_notice->showNotice(text("note.conflict"_text),
                         {{text("note.keepBoth"_text), resolve(NoteDocument::Choice::KeepBoth)},
                          {text("note.keepMine"_text), resolve(NoteDocument::Choice::KeepMine)},
                          {text("note.useTheirs"_text), resolve(NoteDocument::Choice::UseTheirs)}},
                         false);
}

void QuickNoteEditorView::saveNow()
{
    m_title->commitName();
    m_document.save();
}

void QuickNoteEditorView::finish()
{
    m_title->commitName();
    m_document.close();
}

} // namespace orvelle
