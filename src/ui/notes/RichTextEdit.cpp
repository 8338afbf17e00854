#include "ui/notes/RichTextEdit.h"

#include "base/Text.h"
#include "ui/common/KeptWindow.h"
#include "ui/common/PlainToolTip.h"
#include "ui/notes/LinkHighlighter.h"
#include "ui/notes/NoteFormatting.h"
#include "ui/notes/RichTextMime.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

namespace orvelle {

namespace {

constexpr int margin = 12;

/// Keys that the toolkit's editors take for commands of their own.
bool isOurShortcut(const QKeyEvent &key)
{
    return key.modifiers() == Qt::ControlModifier && (key.key() == Qt::Key_K || key.key() == Qt::Key_U);
}

bool isReturn(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

RichTextEdit::RichTextEdit(QWidget *parent) : QTextEdit(parent), m_markers(*document())
{
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(false);
    setAutoFormatting(QTextEdit::AutoNone);
    viewport()->setMouseTracking(true);
    document()->setDocumentMargin(margin);
    new LinkHighlighter(document(), *this);
    fitIndent();
}

RichText RichTextEdit::richText() const
{
    return richTextOf(*document());
}

void RichTextEdit::showText(const RichText &text)
{
    setRichText(*document(), text);
    moveCursor(QTextCursor::Start);
}

void RichTextEdit::replaceText(const RichText &text)
{
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    cursor.setBlockFormat(BlockList().format());
    insertRichText(cursor, text);
    cursor.endEditBlock();
}

RichStyle RichTextEdit::currentStyle() const
{
    return styleOf(currentCharFormat());
}

void RichTextEdit::changeStyle(const std::function<void(RichStyle &)> &change)
{
    if (textCursor().hasSelection()) {
        restyle(textCursor(), change);
        return;
    }
    RichStyle style = currentStyle();
    change(style);
    setCurrentCharFormat(charFormatOf(style));
}

void RichTextEdit::pastePlain()
{
    if (const QMimeData *copied = QApplication::clipboard()->mimeData())
        insert(plainTextOf(*copied));
}

void RichTextEdit::insert(const std::optional<RichText> &text)
{
    if (!text) {
        emit pasteRefused();
        return;
    }
    QTextCursor cursor = textCursor();
    insertRichText(cursor, *text);
    setTextCursor(cursor);
    ensureCursorVisible();
}

QMimeData *RichTextEdit::createMimeDataFromSelection() const
{
    return mimeDataOf(richTextOf(textCursor())).release();
}

bool RichTextEdit::canInsertFromMimeData(const QMimeData *source) const
{
    return source && (source->hasText() || source->hasHtml() || source->hasUrls());
}

void RichTextEdit::insertFromMimeData(const QMimeData *source)
{
    if (source && canInsertFromMimeData(source))
        insert(richTextOf(*source));
}

bool RichTextEdit::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isOurShortcut(*static_cast<QKeyEvent *>(event))) {
        event->ignore();
        return false;
    }
    return QTextEdit::event(event);
}

void RichTextEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Control)
        updatePointer(viewport()->mapFromGlobal(QCursor::pos()), Qt::ControlModifier);
    if (handleStructureKey(*event))
        return;
    const QString typed = event->text();
    const bool isText = !typed.isEmpty() && typed.front().isPrint();
    if (isText)
        leaveLinkBehind();
    QTextEdit::keyPressEvent(event);
    if (typed == QStringLiteral(" ") && !beginListAsTyped(textCursor())) {
        QTextCursor before = textCursor();
        before.movePosition(QTextCursor::PreviousCharacter);
        linkWordBefore(before);
    }
}

bool RichTextEdit::handleStructureKey(const QKeyEvent &event)
{
    const int key = event.key();
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    bool handled = false;
    if (isReturn(key))
        handled = handleReturn(modifiers);
    else if (key == Qt::Key_Backspace && modifiers == Qt::NoModifier)
        handled = handleBackspace();
    else if (key == Qt::Key_Tab && modifiers == Qt::NoModifier)
        handled = changeLevel(textCursor(), 1);
    else if (key == Qt::Key_Backtab)
        handled = changeLevel(textCursor(), -1) || focusPreviousChild();
    if (handled)
        ensureCursorVisible();
    return handled;
}

bool RichTextEdit::handleReturn(Qt::KeyboardModifiers modifiers)
{
    if (modifiers == Qt::NoModifier) {
        linkWordBefore(textCursor());
        insertParagraphBreak(textCursor());
        return true;
    }
    if (modifiers != Qt::ControlModifier)
        return false;
    if (const QString link = linkAt(textCursor()); !toggleChecked(textCursor()) && !link.isEmpty())
        emit linkActivated(link);
    return true;
}

bool RichTextEdit::handleBackspace()
{
    const QTextCursor cursor = textCursor();
    return !cursor.hasSelection() && cursor.atBlockStart() && changeLevel(cursor, -1);
}

void RichTextEdit::leaveLinkBehind()
{
    const QTextCursor cursor = textCursor();
    RichStyle style = currentStyle();
    if (cursor.hasSelection() || style.link.isEmpty())
        return;
    QTextCursor next(cursor);
    const bool goesOn = next.movePosition(QTextCursor::NextCharacter) && !cursor.atBlockEnd() &&
                        styleOf(next.charFormat()).link == style.link;
    if (goesOn && !cursor.atBlockStart())
        return;
    style.link.clear();
    setCurrentCharFormat(charFormatOf(style));
}

void RichTextEdit::inputMethodEvent(QInputMethodEvent *event)
{
    leaveLinkBehind();
    QTextEdit::inputMethodEvent(event);
}

void RichTextEdit::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Control)
        updatePointer(viewport()->mapFromGlobal(QCursor::pos()), Qt::NoModifier);
    QTextEdit::keyReleaseEvent(event);
}

QPointF RichTextEdit::scrolledBy() const
{
    return QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value());
}

QTextBlock RichTextEdit::checkItemAt(const QPoint &position) const
{
    const QTextBlock block = cursorForPosition(position).block();
    const bool isHit =
        BlockList::of(block).kind == ListKind::Check && m_markers.markerRect(block).contains(position + scrolledBy());
    return isHit ? block : QTextBlock();
}

void RichTextEdit::mousePressEvent(QMouseEvent *event)
{
    const QPoint position = event->position().toPoint();
    const QTextBlock item = event->button() == Qt::LeftButton ? checkItemAt(position) : QTextBlock();
    if (item.isValid()) {
        toggleChecked(QTextCursor(item));
        return;
    }
    const bool opens = event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier;
    m_pressedLink = opens ? anchorAt(position) : QString();
    if (m_pressedLink.isEmpty())
        QTextEdit::mousePressEvent(event);
}

void RichTextEdit::mouseReleaseEvent(QMouseEvent *event)
{
    const QString pressed = std::exchange(m_pressedLink, QString());
    if (pressed.isEmpty())
        QTextEdit::mouseReleaseEvent(event);
    else if (anchorAt(event->position().toPoint()) == pressed)
        emit linkActivated(pressed);
}

void RichTextEdit::mouseMoveEvent(QMouseEvent *event)
{
    const KeptWindow kept(*this); // this may be a drag of the toolkit's
    QTextEdit::mouseMoveEvent(event);
    updatePointer(event->position().toPoint(), event->modifiers());
}

void RichTextEdit::updatePointer(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    const bool isLink = modifiers == Qt::ControlModifier && !anchorAt(position).isEmpty();
    const bool acts = isLink || checkItemAt(position).isValid();
    viewport()->setCursor(acts ? Qt::PointingHandCursor : Qt::IBeamCursor);
}

bool RichTextEdit::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QTextEdit::viewportEvent(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const QString link = anchorAt(help->pos());
    if (link.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), plainToolTip(link.left(200) + u'\n' + text("note.link.openHint"_text)),
                           viewport());
    return true;
}

void RichTextEdit::contextMenuEvent(QContextMenuEvent *event)
{
    // Opened without a loop of its own: the window may close under it.
    QMenu *menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (event->reason() == QContextMenuEvent::Mouse && !textCursor().hasSelection())
        setTextCursor(cursorForPosition(event->pos()));
    QAction *before = menu->actions().value(0);
    const auto add = [&](const QString &title, auto run) {
        auto *action = new QAction(title, menu);
        connect(action, &QAction::triggered, this, run);
        menu->insertAction(before, action);
    };
    if (const QString link = linkAt(textCursor()); !link.isEmpty()) {
        add(text("note.link.open"_text), [this, link] { emit linkActivated(link); });
        add(text("note.link.edit"_text), [this] { emit editLinkRequested(); });
        add(text("note.link.remove"_text), [this] { setLink(textCursor(), {}); });
        menu->insertSeparator(before);
    }
    QAction *plain = menu->addAction(text("note.pastePlain"_text), this, &RichTextEdit::pastePlain);
    plain->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V));
    plain->setEnabled(canPaste());
    menu->popup(event->globalPos());
}

void RichTextEdit::changeEvent(QEvent *event)
{
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        if (auto *highlighter = document()->findChild<LinkHighlighter *>())
            highlighter->rehighlight();
    } else if (event->type() == QEvent::FontChange) {
        fitIndent();
    }
}

void RichTextEdit::fitIndent()
{
    document()->setIndentWidth(QFontMetricsF(font()).height() * 1.5);
    setTabStopDistance(QFontMetricsF(font()).horizontalAdvance(u' ') * 8);
}

void RichTextEdit::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(event->rect());
    painter.translate(-scrolledBy());
    const QTextBlock first = cursorForPosition(QPoint(0, event->rect().top())).block();
    m_markers.paint(painter, first, event->rect().bottom() + scrolledBy().y(), *viewport());
}

} // namespace orvelle
