#include "ui/menu/MenuStage.h"

#include "platform/OverlayShell.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWindow>

namespace orvelle {

namespace {

// In milliseconds.
constexpr int longestSearch = 200;
constexpr int longestFrame = 150;

} // namespace

MenuStage::MenuStage(OverlayShell &shell)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint), m_shell(shell)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setObjectName(QStringLiteral("MenuStage"));
}

MenuStage::~MenuStage()
{
    withdraw();
}

void MenuStage::retire()
{
    if (m_isCovering)
        m_shell.letGo(*windowHandle());
    update();
    QTimer::singleShot(longestFrame, this, [this] {
        withdraw();
        deleteLater();
    });
}

void MenuStage::withdraw()
{
    if (std::exchange(m_isCovering, false))
        m_shell.uncover(*windowHandle());
    hide();
}

bool MenuStage::open()
{
    winId();
    m_isCovering = m_shell.cover(*windowHandle());
    if (!m_isCovering)
        return false;
    resize(windowHandle()->size());
    show();
    setFocus();
    QTimer::singleShot(longestSearch, this, [this] { found(mapToGlobal(rect().center())); });
    return true;
}

bool MenuStage::event(QEvent *event)
{
    if (event->type() == QEvent::Enter)
        found(static_cast<QEnterEvent *>(event)->globalPosition().toPoint());
    else if (event->type() == QEvent::MouseMove)
        found(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
    return QWidget::event(event);
}

void MenuStage::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillRect(event->rect(), Qt::transparent);
}

void MenuStage::found(const QPoint &global)
{
    if (!std::exchange(m_isFound, true))
        emit pointerFound(global);
}

} // namespace orvelle
