#include "ui/quickadd/QuickAddLinkView.h"

#include "base/Text.h"
#include "links/LinkDetection.h"
#include "links/LinkStore.h"
#include "platform/Clock.h"
#include "platform/FileBookmarks.h"
#include "platform/Volumes.h"
#include "ui/common/Icons.h"
#include "ui/quickadd/DropArea.h"
#include "ui/quickadd/GroupPicker.h"

#include <QAction>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <utility>

namespace orvelle {

namespace {

/// The path of the first file, else the first address as text.
QString linkIn(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            return url.toLocalFile();
    }
    if (data.hasText())
        return data.text().trimmed();
    return urls.isEmpty() ? QString() : urls.constFirst().toString(QUrl::FullyEncoded);
}

} // namespace

QuickAddLinkView::QuickAddLinkView(const QuickAddServices &services, const std::optional<QUuid> &initialGroupId,
                                   std::function<void()> onDismiss, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_onDismiss(std::move(onDismiss)),
      m_url(new QLineEdit(this)),
      m_icon(m_url->addAction(symbolIcon(QStringLiteral("globe")), QLineEdit::LeadingPosition)),
      m_name(new QLineEdit(this)),
      m_group(new GroupPicker(services.links, this)),
      m_dropArea(new DropArea(this)),
      m_hint(new QLabel(this)),
      m_add(new QPushButton(text("quickAdd.add"_text), this))
{
    setAcceptDrops(true);
    buildFields();
    m_group->select(initialGroupId);
    connect(m_url, &QLineEdit::textChanged, this, &QuickAddLinkView::refresh);
    connect(m_add, &QPushButton::clicked, this, &QuickAddLinkView::add);
    refresh();
}

void QuickAddLinkView::buildFields()
{
    m_url->setObjectName(QStringLiteral("quickAddUrl"));
    m_name->setObjectName(QStringLiteral("quickAddName"));
    m_group->setObjectName(QStringLiteral("quickAddGroup"));
    m_add->setObjectName(QStringLiteral("quickAddAdd"));
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    // Room for two lines from the start, so that nothing jumps.
    m_hint->setMinimumHeight(2 * fontMetrics().lineSpacing());

    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setVerticalSpacing(10);
    form->addRow(text("quickAdd.address"_text), makeAddressRow());
    form->addRow(text("quickAdd.name"_text), m_name);
    form->addRow(text("quickAdd.selectFolder"_text), m_group);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 20, 20, 16);
    column->setSpacing(14);
    column->addLayout(form);
    column->addWidget(m_dropArea, 1);
    column->addWidget(makeButtonRow());
    setFocusProxy(m_url);
}

QWidget *QuickAddLinkView::makeAddressRow()
{
    m_url->setPlaceholderText(text("quickAdd.urlPlaceholder"_text));
    m_url->setAccessibleName(text("quickAdd.address"_text));
    m_url->setClearButtonEnabled(true);
    m_url->setMinimumWidth(fontMetrics().horizontalAdvance(m_url->placeholderText()) + 40);
    auto *paste = new QPushButton(symbolIcon(QStringLiteral("doc.on.clipboard")), text("quickAdd.paste"_text), this);
    paste->setObjectName(QStringLiteral("quickAddPaste"));
    paste->setAutoDefault(false);
    connect(paste, &QPushButton::clicked, this, &QuickAddLinkView::pasteFromClipboard);

    setTabOrder(m_url, paste);
    setTabOrder(paste, m_name);
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(m_url, 1);
    layout->addWidget(paste);
    return row;
}

QWidget *QuickAddLinkView::makeButtonRow()
{
    auto *cancel = new QPushButton(text("sheet.cancel"_text), this);
    cancel->setAutoDefault(false);
    m_add->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, m_onDismiss);
    setTabOrder(m_group, cancel);
    setTabOrder(cancel, m_add);
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->setSpacing(8);
    layout->addWidget(m_hint, 1);
    layout->addWidget(cancel);
    layout->addWidget(m_add);
    return row;
}

LinkType QuickAddLinkView::detectedType() const
{
    return orvelle::detectedType(m_url->text(), m_services.volumes.realHomeDirectory());
}

QString QuickAddLinkView::iconName() const
{
    return detectedIconName(detectedType());
}

bool QuickAddLinkView::canAdd() const
{
    return !m_url->text().isEmpty() && isValidLink(m_url->text());
}

void QuickAddLinkView::refresh()
{
    const bool valid = canAdd();
    m_add->setEnabled(valid);
    m_hint->setText(valid || m_url->text().isEmpty() ? QString() : text("quickAdd.invalid"_text));
    m_name->setPlaceholderText(valid ? defaultName(m_url->text(), detectedType())
                                     : text("quickAdd.namePlaceholder"_text));
    m_icon->setIcon(symbolIcon(iconName()));
}

void QuickAddLinkView::pasteFromClipboard()
{
    const QMimeData *content = QGuiApplication::clipboard()->mimeData();
    const QString found = content ? linkIn(*content) : QString();
    if (isValidLink(found))
        m_url->setText(found);
    else
        m_hint->setText(text("quickAdd.nothingToPaste"_text));
    m_url->setFocus();
}

bool QuickAddLinkView::handleDrop(const QMimeData &dropped)
{
    const QString found = linkIn(dropped);
    if (!isValidLink(found))
        return false;
    m_url->setText(found);
    return true;
}

void QuickAddLinkView::add()
{
    auto item = linkFromText(m_url->text(), m_name->text(), m_services.volumes, m_services.clock.now());
    if (!item)
        return;
    if (item->type != LinkType::Url) {
        // Without one the link still works through its path.
        if (const auto bookmark = m_services.links.fileBookmarks().create(item->path))
            item->bookmarkData = *bookmark;
    }
    const auto group = m_group->selectedGroupId();
    if (!group || !m_services.links.addLinkToGroup(*item, *group))
        m_services.links.addLink(*item);
    m_onDismiss();
}

void QuickAddLinkView::selectGroup(const std::optional<QUuid> &groupId)
{
    m_group->select(groupId);
}

void QuickAddLinkView::dragEnterEvent(QDragEnterEvent *event)
{
    if (!isValidLink(linkIn(*event->mimeData())))
        return;
    m_dropArea->setDropTargeted(true);
    event->acceptProposedAction();
}

void QuickAddLinkView::dragLeaveEvent(QDragLeaveEvent *)
{
    m_dropArea->setDropTargeted(false);
}

void QuickAddLinkView::dropEvent(QDropEvent *event)
{
    m_dropArea->setDropTargeted(false);
    if (handleDrop(*event->mimeData()))
        event->acceptProposedAction();
}

void QuickAddLinkView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        refresh();
}

} // namespace orvelle
