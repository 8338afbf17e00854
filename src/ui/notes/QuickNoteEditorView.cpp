#include "ui/notes/QuickNoteEditorView.h"

#include "base/Text.h"
#include "links/richtext/RichTextLinks.h"
#include "ui/common/NoticeBar.h"
#include "ui/notes/NoteFormatBar.h"
#include "ui/notes/NoteFormatting.h"
#include "ui/notes/NoteLinkBar.h"
#include "ui/notes/NoteTitleBarView.h"
#include "ui/notes/RichTextEdit.h"

#include <QShortcut>
#include <QVBoxLayout>

namespace orvelle {

QuickNoteEditorView::QuickNoteEditorView(const NoteEditorServices &services, const LinkItem &note, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_text(new RichTextEdit(this)),
      m_document(services, note, [this] { return m_text->richText(); }),
      m_title(new NoteTitleBarView(services, note, this)),
      m_format(new NoteFormatBar(*m_text, this)),
      m_link(new NoteLinkBar(this)),
      m_notice(new NoticeBar(this))
{
    m_text->setObjectName(QStringLiteral("noteText"));
    m_text->setPlaceholderText(text("note.placeholder"_text));
    m_text->setAccessibleName(text("note.text"_text));
    setFocusProxy(m_text);
    m_notice->setFlush(true);
    layOut();
    fill();
    connectText();
    connectDocument();
}

void QuickNoteEditorView::layOut()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_title);
    column->addWidget(m_format);
    column->addWidget(m_link);
    column->addWidget(m_notice);
    column->addWidget(m_text, 1);
}

void QuickNoteEditorView::fill()
{
    const NoteContent::Decoded stored = m_document.storedText();
    m_text->showText(stored.text);
    m_document.editorFilled();
    if (stored.incomplete)
        m_notice->showNotice(text("note.incomplete"_text));
}

void QuickNoteEditorView::connectText()
{
    connect(m_text, &QTextEdit::textChanged, &m_document, &NoteDocument::textEdited);
    connect(m_text, &RichTextEdit::linkActivated, this, &QuickNoteEditorView::openLink);
    connect(m_text, &RichTextEdit::editLinkRequested, this, &QuickNoteEditorView::editLink);
    connect(m_text, &RichTextEdit::pasteRefused, this,
            [this] { m_notice->showNotice(text("note.pasteRefused"_text)); });
    connect(m_format, &NoteFormatBar::linkRequested, this, &QuickNoteEditorView::editLink);
    connect(m_link, &NoteLinkBar::addressChosen, this,
            [this](const QString &address) { setLink(m_text->textCursor(), address); });
    connect(m_link, &NoteLinkBar::openRequested, this, &QuickNoteEditorView::openLink);
    connect(m_link, &NoteLinkBar::closed, m_text, qOverload<>(&QWidget::setFocus));
    auto *pastePlain = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V), this);
    pastePlain->setContext(Qt::WidgetWithChildrenShortcut);
    connect(pastePlain, &QShortcut::activated, m_text, &RichTextEdit::pastePlain);
}

void QuickNoteEditorView::connectDocument()
{
    connect(&m_document, &NoteDocument::replaceText, m_text, &RichTextEdit::replaceText);
    connect(&m_document, &NoteDocument::noteChanged, this, [this] { m_title->setNote(m_document.note()); });
    connect(&m_document, &NoteDocument::stateChanged, this, &QuickNoteEditorView::showState);
    connect(&m_document, &NoteDocument::changedElsewhere, this,
            [this] { m_notice->showNotice(text("note.changedElsewhere"_text)); });
}

void QuickNoteEditorView::editLink()
{
    m_link->edit(linkAt(m_text->textCursor()));
}

void QuickNoteEditorView::openLink(const QString &address)
{
    const auto link = safeLink(address);
    if (!link || !m_services.openLink(*link))
        m_notice->showNotice(text("note.linkRefused"_text));
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

void QuickNoteEditorView::finish()
{
    m_title->commitName();
    m_document.close();
}

} // namespace orvelle
