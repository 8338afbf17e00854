#include "ui/menu/rows/ClipboardRowView.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkColors.h"
#include "ui/common/Colors.h"
#include "widgets/clipboard/ClipboardManager.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int buttonGap = 5;
constexpr int titleExtra = 4; ///< beyond a line, for the buttons
constexpr int titleLine = -1;
constexpr int noLine = -2;

} // namespace

ClipboardRowView::ClipboardRowView(ClipboardManager &manager, const Notifications &notifications,
                                   std::function<void()> closeMenu, QWidget *parent)
    : WidgetRowView(parent),
      m_manager(manager),
      m_closeMenu(std::move(closeMenu)),
      m_pause(new MenuRowButton(this)),
      m_clear(new MenuRowButton(this))
{
    m_pause->setObjectName(u"pause"_s);
    m_clear->setObjectName(u"clear"_s);
    m_clear->setSymbol(u"trash"_s, text("clipboard.clear"_text));
    m_clear->setToolTip(text("clipboard.clear"_text));
    connect(m_pause, &QAbstractButton::clicked, this, [this] { m_manager.setPaused(!m_manager.isPaused()); });
    connect(m_clear, &QAbstractButton::clicked, this, [this] { m_manager.clearHistory(); });
    connect(&notifications, &Notifications::clipboardChanged, this, &ClipboardRowView::refresh);
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, const QWidget *now) { followFocus(now); });
    refresh();
}

/// The base class still takes the focus away, when there is nothing left here
/// that could follow it.
ClipboardRowView::~ClipboardRowView()
{
    disconnect(qApp, nullptr, this, nullptr);
}

void ClipboardRowView::refresh()
{
    const bool paused = m_manager.isPaused();
    const QString action = paused ? text("clipboard.resume"_text) : text("clipboard.pause"_text);
    m_pause->setSymbol(paused ? u"play.fill"_s : u"pause.fill"_s, action);
    m_pause->setToolTip(action);
    if (m_manager.isForbidden())
        m_pause->hide();
    const int line = currentLine();
    if (refreshEntries()) {
        m_clear->setVisible(!m_entries.isEmpty());
        updateGeometry();
        if (line != noLine && currentLine() == noLine)
            moveTo(std::min(line, int(m_entries.size()) - 1));
    }
    QString state = paused ? text("clipboard.paused"_text) : QString();
    if (m_entries.isEmpty())
        state = emptyText();
    describe(text("clipboard.title"_text), state);
    place();
    update();
}

QString ClipboardRowView::emptyText() const
{
    return m_manager.isForbidden() ? text("clipboard.forbidden"_text) : text("clipboard.empty"_text);
}

/// What is still there keeps its line, and with it the focus. False when
/// nothing has changed.
bool ClipboardRowView::refreshEntries()
{
    const QList<ClipboardEntry> &history = m_manager.clipboardHistory();
    const bool same = std::ranges::equal(m_entries, history, std::ranges::equal_to(),
                                         [](const ClipboardEntryButton *each) { return each->entry(); });
    if (same && !history.isEmpty())
        return false;
    QList<ClipboardEntryButton *> kept;
    for (const ClipboardEntry &entry : history) {
        const auto known =
            std::ranges::find(m_entries, entry, [](const ClipboardEntryButton *each) { return each->entry(); });
        if (known == m_entries.end()) {
            kept += makeEntry(entry);
        } else {
            kept += *known;
            m_entries.erase(known);
        }
    }
    // One of them may be the sender of what led here.
    for (ClipboardEntryButton *gone : std::exchange(m_entries, kept)) {
        gone->hide();
        gone->deleteLater();
    }
    return true;
}

ClipboardEntryButton *ClipboardRowView::makeEntry(const ClipboardEntry &entry)
{
    auto *button = new ClipboardEntryButton(entry, look(), this);
    connect(button, &ClipboardEntryButton::chosen, this, [this, entry](bool plain) { restore(entry, plain); });
    connect(button, &ClipboardEntryButton::forgetWanted, this, [this, id = entry.id] { m_manager.forget(id); });
    button->show();
    return button;
}

/// The menu, and this row with it, is gone before the entry is written.
void ClipboardRowView::restore(const ClipboardEntry &entry, bool asPlainText)
{
    if (!entry.payload.isPasteable())
        return;
    using PasteAs = ClipboardManager::PasteAs;
    ClipboardManager &manager = m_manager;
    const ClipboardEntry wanted = entry;
    const auto close = m_closeMenu;
    close();
    manager.writeToPasteboard(wanted, asPlainText ? PasteAs::PlainText : PasteAs::Copied);
}

QSize ClipboardRowView::sizeHint() const
{
    const int title = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap + MenuLook::margin + 2 * buttonGap +
                      fontMetrics().horizontalAdvance(emptyText()) + m_pause->sizeHint().width() +
                      m_clear->sizeHint().width();
    QSize size(title, lineHeight() + titleExtra);
    for (const ClipboardEntryButton *each : m_entries) {
        const QSize line = each->sizeHint();
        size = {std::max(size.width(), std::min(line.width(), MenuLook::maximumWidth)), size.height() + line.height()};
    }
    return size;
}

void ClipboardRowView::place()
{
    const int titleHeight = lineHeight() + titleExtra;
    const QRect content = contentRect();
    int end = content.x() + content.width();
    for (MenuRowButton *button : {m_clear, m_pause}) {
        if (button->isHidden())
            continue;
        const QSize size = button->sizeHint();
        button->setGeometry(
            mirrored({end - size.width(), (titleHeight - size.height()) / 2, size.width(), size.height()}));
        end -= size.width() + buttonGap;
    }
    int top = titleHeight;
    for (ClipboardEntryButton *each : m_entries) {
        const int height = each->sizeHint().height();
        each->setGeometry(0, top, width(), height);
        top += height;
    }
}

void ClipboardRowView::resizeEvent(QResizeEvent *event)
{
    WidgetRowView::resizeEvent(event);
    place();
}

void ClipboardRowView::followFocus(const QWidget *now)
{
    for (ClipboardEntryButton *each : m_entries)
        each->setCurrent(now && (now == each || each->isAncestorOf(now)));
}

int ClipboardRowView::currentLine() const
{
    if (m_pause->hasFocus() || m_clear->hasFocus())
        return titleLine;
    const QWidget *now = focusWidget();
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        const QWidget *line = m_entries.at(i);
        if (now && (now == line || line->isAncestorOf(now)) && now->hasFocus())
            return int(i);
    }
    return noLine;
}

bool ClipboardRowView::moveTo(int line)
{
    if (line < titleLine || line >= m_entries.size())
        return false;
    QWidget *wanted = line == titleLine ? m_pause : static_cast<QWidget *>(m_entries.at(line));
    wanted->setFocus(Qt::TabFocusReason);
    return true;
}

QList<MenuRowButton *> ClipboardRowView::titleButtons() const
{
    return m_clear->isHidden() ? QList{m_pause} : QList{m_pause, m_clear};
}

bool ClipboardRowView::moveInTitle(int step)
{
    const QList<MenuRowButton *> buttons = titleButtons();
    const auto current = std::ranges::find_if(buttons, &QWidget::hasFocus);
    const qsizetype wanted = (current - buttons.begin()) + step;
    if (current == buttons.end() || wanted < 0 || wanted >= buttons.size())
        return false;
    buttons.at(wanted)->setFocus(Qt::TabFocusReason);
    return true;
}

void ClipboardRowView::keyPressEvent(QKeyEvent *event)
{
    const int line = currentLine();
    const bool isBack = event->key() == Qt::Key_Backtab || event->modifiers().testFlag(Qt::ShiftModifier);
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    bool done = false;
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        done = line != noLine && moveTo(line + (event->key() == Qt::Key_Down ? 1 : -1));
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        done = moveInTitle(isBack ? -1 : 1) || (line != noLine && moveTo(line + (isBack ? -1 : 1)));
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
        moveInTitle((event->key() == Qt::Key_Right) != rightToLeft ? 1 : -1);
        done = true;
        break;
    default:
        break;
    }
    event->setAccepted(done);
}

/// To the newest entry, which is what is mostly wanted; the title is above it.
void ClipboardRowView::focusWithin(bool fromBehind)
{
    if (fromBehind)
        moveTo(int(m_entries.size()) - 1);
    else
        moveTo(m_entries.isEmpty() ? titleLine : 0);
}

void ClipboardRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const int height = lineHeight() + titleExtra;
    const auto chosen = nsColor(m_manager.iconColor()).value_or(*nsColor(ClipboardManager::defaultIconColor()));
    QRect icon = iconRect();
    icon.moveTop((height - icon.height()) / 2);
    paintSymbol(painter, u"list.clipboard"_s, icon,
                readable(toQColor(chosen, palette()), look().ground(), textColor(), textContrast(palette())));
    QRect place = contentRect();
    place.setHeight(height);
    const auto write = [&](const QString &words, const QColor &color) {
        painter.setPen(color);
        painter.drawText(mirrored(place), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine, words);
        place.setLeft(place.left() + fontMetrics().horizontalAdvance(words + u"  "_s));
    };
    painter.setFont(font());
    if (m_entries.isEmpty())
        write(emptyText(), labelColor());
    else
        write(text("clipboard.title"_text), textColor());
    if (m_manager.isPaused())
        write(text("clipboard.paused"_text), labelColor());
}

} // namespace orvelle
