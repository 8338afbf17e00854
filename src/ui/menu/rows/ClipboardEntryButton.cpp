#include "ui/menu/rows/ClipboardEntryButton.h"

#include "base/Text.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/LineText.h"
#include "ui/common/PlainToolTip.h"
#include "widgets/clipboard/ClipboardEntries.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int thumbnailSide = 32;
constexpr int thumbnailMargin = 2;
constexpr int actionGap = 4;
/// How far the text of what cannot be pasted is on its way to the ground.
constexpr double dimmed = 0.4;

} // namespace

ClipboardEntryButton::ClipboardEntryButton(const ClipboardEntry &entry, const MenuLook &look, QWidget *row)
    : MenuRowButton(row), m_entry(entry), m_look(look), m_rowText(rowText(entry.displayText))
{
    setObjectName(u"clipboardEntry"_s);
    setAccessibleName(m_rowText);
    if (m_entry.payload.canPasteAsPlainText())
        setAccessibleDescription(orvelle::text("clipboard.plainTextHint"_text));
    if (m_entry.payload.kind == ClipboardPayload::Kind::Plain || m_entry.payload.canPasteAsPlainText())
        setToolTip(plainToolTip(m_entry.payload.text));
    connect(this, &QAbstractButton::clicked, this,
            [this] { emit chosen(QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)); });
}

QSize ClipboardEntryButton::sizeHint() const
{
    const int line = m_look.rowHeights().item;
    const int height = m_entry.thumbnail.isNull() ? line : std::max(line, thumbnailSide + 2 * thumbnailMargin);
    const int width = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap + MenuLook::margin;
    return {width + fontMetrics().horizontalAdvance(m_rowText), height};
}

QRect ClipboardEntryButton::mirrored(const QRect &rect) const
{
    return QStyle::visualRect(layoutDirection(), this->rect(), rect);
}

void ClipboardEntryButton::setCurrent(bool current)
{
    if (current == m_current)
        return;
    m_current = current;
    if (current && m_actions.isEmpty())
        makeActions();
    for (MenuRowButton *action : std::as_const(m_actions))
        action->setVisible(current);
    update();
}

MenuRowButton *ClipboardEntryButton::makeAction(const char *name, const QString &symbol, const QString &title)
{
    auto *action = new MenuRowButton(this);
    action->setObjectName(QString::fromLatin1(name));
    action->setSymbol(symbol, title);
    action->setToolTip(title);
    // It stands on the selection, so its colours are those of the selection.
    QPalette onSelection = palette();
    onSelection.setColor(QPalette::WindowText, palette().color(QPalette::HighlightedText));
    onSelection.setColor(QPalette::Highlight, palette().color(QPalette::HighlightedText));
    onSelection.setColor(QPalette::HighlightedText, palette().color(QPalette::Highlight));
    action->setPalette(onSelection);
    m_actions += action;
    return action;
}

void ClipboardEntryButton::makeActions()
{
    if (m_entry.payload.canPasteAsPlainText()) {
        connect(makeAction("plainText", u"textformat"_s, orvelle::text("clipboard.plainText"_text)),
                &QAbstractButton::clicked, this, [this] { emit chosen(true); });
    }
    connect(makeAction("forget", u"xmark"_s, orvelle::text("clipboard.forget"_text)), &QAbstractButton::clicked, this,
            &ClipboardEntryButton::forgetWanted);
    placeActions();
}

void ClipboardEntryButton::placeActions()
{
    int end = width() - MenuLook::margin;
    for (auto action = m_actions.rbegin(); action != m_actions.rend(); ++action) {
        const QSize size = (*action)->sizeHint();
        (*action)->setGeometry(
            mirrored({end - size.width(), (height() - size.height()) / 2, size.width(), size.height()}));
        end -= size.width() + actionGap;
    }
}

void ClipboardEntryButton::resizeEvent(QResizeEvent *event)
{
    MenuRowButton::resizeEvent(event);
    placeActions();
}

/// The pointer comes back from an action, which is no entering of this.
void ClipboardEntryButton::mouseMoveEvent(QMouseEvent *event)
{
    MenuRowButton::mouseMoveEvent(event);
    if (!hasFocus() && rect().contains(mapFromGlobal(QCursor::pos())))
        setFocus(Qt::MouseFocusReason);
}

bool ClipboardEntryButton::moveAmongActions(int step)
{
    if (m_actions.isEmpty())
        return false;
    const auto current = std::ranges::find_if(m_actions, &QWidget::hasFocus);
    const qsizetype from = current == m_actions.end() ? -1 : current - m_actions.begin();
    const qsizetype wanted = std::clamp<qsizetype>(from + step, -1, m_actions.size() - 1);
    QWidget *next = wanted < 0 ? static_cast<QWidget *>(this) : m_actions.at(wanted);
    next->setFocus(Qt::TabFocusReason);
    return true;
}

void ClipboardEntryButton::keyPressEvent(QKeyEvent *event)
{
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Select:
        if (!event->isAutoRepeat())
            emit chosen(event->modifiers().testFlag(Qt::ShiftModifier));
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        emit forgetWanted();
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
        event->setAccepted(moveAmongActions((event->key() == Qt::Key_Right) != rightToLeft ? 1 : -1));
        return;
    default:
        event->ignore();
    }
}

void ClipboardEntryButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (m_current)
        m_look.paintSelection(painter, rect());
    QColor ink = palette().color(m_current ? QPalette::HighlightedText : QPalette::WindowText);
    if (!m_entry.payload.isPasteable())
        ink = quiet(ink, m_current ? palette().color(QPalette::Highlight) : m_look.ground(), dimmed, palette());
    const QRect icon =
        mirrored({MenuLook::margin, (height() - MenuLook::iconSide) / 2, MenuLook::iconSide, MenuLook::iconSide});
    if (m_entry.iconName)
        painter.drawPixmap(icon.topLeft(),
                           symbolPixmap(*m_entry.iconName, MenuLook::iconSide, ink, devicePixelRatioF()));
    int start = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap;
    if (!m_entry.thumbnail.isNull()) {
        const QRect place(start, (height() - thumbnailSide) / 2, thumbnailSide, thumbnailSide);
        painter.drawImage(mirrored(place), m_entry.thumbnail);
        start += thumbnailSide + thumbnailGap;
    }
    int end = width() - MenuLook::margin;
    for (const MenuRowButton *action : m_actions)
        end -= m_current ? action->width() + actionGap : 0;
    painter.setPen(ink);
    drawLine(painter, mirrored({start, 0, end - start, height()}),
             fontMetrics().elidedText(m_rowText, Qt::ElideRight, end - start), layoutDirection());
}

} // namespace orvelle
