#include "ui/quickadd/QuickAddPanel.h"

#include "base/Text.h"
#include "ui/common/Icons.h"
#include "ui/quickadd/QuickAddLinkView.h"

#include <QEvent>
#include <QVBoxLayout>

namespace orvelle {

QuickAddPanel::QuickAddPanel(const QuickAddServices &services, const std::optional<QUuid> &initialGroupId,
                             QWidget *parent)
    : QDialog(parent),
      m_view(new QuickAddLinkView(
          services, initialGroupId, [this] { close(); }, this))
{
    setObjectName(QStringLiteral("QuickAddPanel"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("menu.quickAdd"_text));
    setWindowIcon(symbolIcon(QStringLiteral("plus.circle.fill")));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_view);
    m_view->setFocus();
}

void QuickAddPanel::selectGroup(const std::optional<QUuid> &groupId)
{
    m_view->selectGroup(groupId);
}

void QuickAddPanel::setAddress(const QString &address)
{
    m_view->setAddress(address);
}

void QuickAddPanel::setVisible(bool visible)
{
    // Before the dialog finds its size and place.
    if (visible && !isVisible())
        m_view->offerClipboard();
    QDialog::setVisible(visible);
}

void QuickAddPanel::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    // On some desktops only the active window may read the clipboard, and
    // something may have been copied while another window was.
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_view->offerClipboard();
}

} // namespace orvelle
