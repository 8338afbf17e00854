#include "ui/quickadd/QuickAddPanel.h"

#include "base/Text.h"
#include "ui/common/Icons.h"
#include "ui/quickadd/QuickAddLinkView.h"

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

} // namespace orvelle
