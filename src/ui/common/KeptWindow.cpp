#include "ui/common/KeptWindow.h"

namespace orvelle {

KeptWindow::KeptWindow(const QWidget &inside)
{
    QWidget *window = inside.window();
    if (window->isHidden() || !window->testAttribute(Qt::WA_DeleteOnClose))
        return;
    m_window = window;
    m_window->setAttribute(Qt::WA_DeleteOnClose, false);
}

KeptWindow::~KeptWindow()
{
    if (!m_window)
        return;
    m_window->setAttribute(Qt::WA_DeleteOnClose);
    if (m_window->isHidden())
        m_window->deleteLater();
}

} // namespace orvelle
