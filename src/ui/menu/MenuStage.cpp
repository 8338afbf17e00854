#include "ui/menu/MenuStage.h"

#include "platform/OverlayShell.h"

#include <QElapsedTimer>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWindow>

namespace orvelle {

namespace {

// In milliseconds.
constexpr int longestSearch = 300; ///< of a compositor that shows the stage
constexpr int longestMapping = 1500;
constexpr int longestFrame = 150;
/// A timer that comes later has waited for this program, and so may the pointer.
constexpr int lateness = 50;
constexpr int mostSearches = 5;

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
    m_isCovering = m_shell.cover(*windowHandle(), [this] { emit taken(); });
    if (!m_isCovering)
        return false;
    resize(windowHandle()->size());
    windowHandle()->installEventFilter(this);
    show();
    setFocus();
    giveUpAfter(longestMapping);
    return true;
}

/// Of the window: the toolkit does not hand each of them on to the widget.
bool MenuStage::eventFilter(QObject *window, QEvent *event)
{
    if (event->type() == QEvent::Enter)
        found(static_cast<QEnterEvent *>(event)->globalPosition().toPoint());
    else if (event->type() == QEvent::MouseMove)
        found(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
    return QWidget::eventFilter(window, event);
}

/// The middle will do for a menu that would otherwise not come.
void MenuStage::giveUpAfter(int milliseconds)
{
    QElapsedTimer passed;
    passed.start();
    QTimer::singleShot(milliseconds, this, [this, milliseconds, passed] {
        if (passed.hasExpired(milliseconds + lateness) && ++m_searches < mostSearches)
            giveUpAfter(milliseconds);
        else
            found(mapToGlobal(rect().center()));
    });
}

void MenuStage::paintEvent(QPaintEvent *event)
{
    // The compositor tells of the pointer once it has this frame.
    if (!std::exchange(m_isPainted, true))
        giveUpAfter(longestSearch);
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
