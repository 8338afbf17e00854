#include "ui/settings/ShortcutRecorderView.h"

#include "base/Text.h"
#include "ui/common/Colors.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>
#include <QWindow>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int horizontalPadding = 14;
constexpr int verticalPadding = 5;
constexpr double radius = 6;
constexpr float edgeOpacity = 0.35F;

/// X and Wayland both report the keys of Linux from 8 on.
constexpr int scanCodeOffset = 8;

quint32 modifiersOf(const QKeyEvent &event)
{
    const std::pair<Qt::KeyboardModifier, quint32> table[] = {
        {Qt::MetaModifier, CommandModifier},
        {Qt::AltModifier, OptionModifier},
        {Qt::ControlModifier, ControlModifier},
        {Qt::ShiftModifier, orvelle::ShiftModifier},
    };
    quint32 result = 0;
    for (const auto &[modifier, flag] : table) {
        if (event.modifiers().testFlag(modifier))
            result |= flag;
    }
    return result;
}

} // namespace

ShortcutRecorderView::ShortcutRecorderView(QWidget *parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] { setRecording(!m_isRecording); });
    describe();
}

ShortcutRecorderView::~ShortcutRecorderView() = default;

void ShortcutRecorderView::setShortcut(const std::optional<Shortcut> &shortcut)
{
    if (shortcut == m_shortcut)
        return;
    m_shortcut = shortcut;
    describe();
    update();
}

QString ShortcutRecorderView::shownText() const
{
    if (m_isRecording)
        return orvelle::text("shortcut.recording"_text);
    return m_shortcut ? displayString(*m_shortcut) : QStringLiteral("–");
}

void ShortcutRecorderView::describe()
{
    // Screen readers know no word for the symbols.
    const QString said = m_isRecording ? shownText() : m_shortcut ? spokenString(*m_shortcut) : QString();
    setAccessibleName(orvelle::text("shortcut.accessible %@"_text, said));
    setAccessibleDescription(orvelle::text("shortcut.recordHint"_text));
    setToolTip(orvelle::text("shortcut.recordHint"_text));
}

QSize ShortcutRecorderView::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    int width = metrics.horizontalAdvance(orvelle::text("shortcut.recording"_text));
    width = std::max(width, metrics.horizontalAdvance(displayString({49, allShortcutModifiers})));
    return {width + 2 * horizontalPadding, metrics.height() + 2 * verticalPadding};
}

void ShortcutRecorderView::setRecording(bool recording)
{
    if (recording == m_isRecording)
        return;
    m_isRecording = recording;
    if (recording)
        setFocus();
    // Otherwise the desktop keeps the combinations that it knows itself.
    if (QWindow *handle = window()->windowHandle())
        handle->setKeyboardGrabEnabled(recording);
    describe();
    update();
    emit recordingChanged(recording);
}

bool ShortcutRecorderView::event(QEvent *event)
{
    if (m_isRecording && event->type() == QEvent::ShortcutOverride) {
        event->accept(); // no menu or button of the window takes the key
        return true;
    }
    if (m_isRecording && event->type() == QEvent::KeyPress) {
        // Before the toolkit moves the focus at Tab.
        keyDown(static_cast<QKeyEvent &>(*event));
        event->accept();
        return true;
    }
    return QAbstractButton::event(event);
}

void ShortcutRecorderView::keyDown(const QKeyEvent &event)
{
    const auto keyCode = keyCodeOfPhysical(static_cast<int>(event.nativeScanCode()) - scanCodeOffset);
    if (!keyCode || event.isAutoRepeat())
        return;
    if (*keyCode == escapeKeyCode) {
        setRecording(false);
        return;
    }
    const Shortcut pressed{*keyCode, modifiersOf(event)};
    if (!(pressed.modifiers & (CommandModifier | ControlModifier)))
        return;
    setShortcut(pressed);
    setRecording(false);
    emit recorded(pressed);
}

void ShortcutRecorderView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void ShortcutRecorderView::focusOutEvent(QFocusEvent *event)
{
    setRecording(false);
    QAbstractButton::focusOutEvent(event);
}

void ShortcutRecorderView::hideEvent(QHideEvent *event)
{
    setRecording(false);
    QAbstractButton::hideEvent(event);
}

void ShortcutRecorderView::enterEvent(QEnterEvent *event)
{
    update();
    QAbstractButton::enterEvent(event);
}

void ShortcutRecorderView::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

void ShortcutRecorderView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor ground = palette().color(group, QPalette::Base);
    const QColor ink = palette().color(group, QPalette::Text);
    const QColor highlight = palette().color(QPalette::Highlight);
    const bool marked = isEnabled() && (m_isRecording || hasFocus());
    QColor edge = marked ? accent(palette(), palette().color(QPalette::Window)) : ink;
    if (!marked && !isHighContrast(palette()))
        edge.setAlphaF(underMouse() && isEnabled() ? 2 * edgeOpacity : edgeOpacity);
    painter.setPen(QPen(edge, marked ? 2 : 1));
    painter.setBrush(m_isRecording ? softTint(highlight, ground, ink).ground : ground);
    const double inset = marked ? 1 : 0.5;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.setPen(m_isRecording ? readable(softTint(highlight, ground, ink).text, ground, ink, textContrast(palette()))
                                 : ink);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, shownText());
}

} // namespace orvelle
