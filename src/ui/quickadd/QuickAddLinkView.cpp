#include "ui/quickadd/QuickAddLinkView.h"

#include "base/Text.h"
#include "links/LinkDetection.h"
#include "links/LinkIcons.h"
#include "links/LinkStore.h"
#include "links/exchange/SameAddress.h"
#include "platform/Clock.h"
#include "platform/FileBookmarks.h"
#include "platform/Volumes.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/Icons.h"
#include "ui/quickadd/ClipboardOffer.h"
#include "ui/quickadd/DropArea.h"
#include "ui/quickadd/GroupPicker.h"
#include "ui/quickadd/LinkMimeData.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>

#include <utility>

namespace orvelle {

namespace {

/// A pause in typing after which an address is taken for finished.
constexpr std::chrono::milliseconds typingPause{600};

} // namespace

QuickAddLinkView::QuickAddLinkView(const QuickAddServices &services, const std::optional<QUuid> &initialGroupId,
                                   std::function<void()> onDismiss, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_onDismiss(std::move(onDismiss)),
      m_url(new QLineEdit(this)),
      m_icon(m_url->addAction(symbolIcon(QStringLiteral("globe")), QLineEdit::LeadingPosition)),
      m_paste(new QPushButton(symbolIcon(QStringLiteral("doc.on.clipboard")), text("quickAdd.paste"_text), this)),
      m_offer(new ClipboardOffer(this)),
      m_name(new QLineEdit(this)),
      m_group(new GroupPicker(services.links, this)),
      m_dropArea(new DropArea(this)),
      m_hint(new QLabel(this)),
      m_cancel(new QPushButton(text("sheet.cancel"_text), this)),
      m_add(new QPushButton(text("quickAdd.add"_text), this)),
      m_typing(new QTimer(this))
{
    setAcceptDrops(true);
    // While it is the first child: this then stands before it in the order of
    // the Tab key. Anywhere else it would send Tab back to the beginning.
    setFocusProxy(m_url);
    buildFields();
    m_group->select(initialGroupId);
    m_typing->setSingleShot(true);
    m_typing->setInterval(typingPause);
    connect(m_typing, &QTimer::timeout, this, &QuickAddLinkView::showHint);
    connect(m_url, &QLineEdit::textChanged, this, &QuickAddLinkView::addressChanged);
    m_url->installEventFilter(this);
    connect(m_offer, &QAbstractButton::clicked, this, &QuickAddLinkView::takeOffer);
    connect(m_add, &QPushButton::clicked, this, &QuickAddLinkView::add);
    refresh();
}

void QuickAddLinkView::buildFields()
{
    m_offer->setObjectName(QStringLiteral("quickAddOffer"));
    m_hint->setObjectName(QStringLiteral("quickAddHint"));
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
    // Below the fields, which then stay in their places when it goes.
    column->addWidget(m_offer);
    column->addWidget(m_dropArea, 1);
    column->addWidget(makeButtonRow());
}

QWidget *QuickAddLinkView::makeAddressRow()
{
    m_url->setPlaceholderText(text("quickAdd.urlPlaceholder"_text));
    m_url->setAccessibleName(text("quickAdd.address"_text));
    addClearButton(m_url);
    m_url->setMinimumWidth(fontMetrics().horizontalAdvance(m_url->placeholderText()) + 40);
    m_paste->setObjectName(QStringLiteral("quickAddPaste"));
    m_paste->setAutoDefault(false);
    connect(m_paste, &QPushButton::clicked, this, &QuickAddLinkView::pasteFromClipboard);
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(m_url, 1);
    layout->addWidget(m_paste);
    return row;
}

QWidget *QuickAddLinkView::makeButtonRow()
{
    m_cancel->setAutoDefault(false);
    m_add->setDefault(true);
    connect(m_cancel, &QPushButton::clicked, this, m_onDismiss);
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->setSpacing(8);
    layout->addWidget(m_hint, 1);
    layout->addWidget(m_cancel);
    layout->addWidget(m_add);
    return row;
}

LinkType QuickAddLinkView::detectedType() const
{
    return orvelle::detectedType(m_url->text(), m_services.volumes);
}

QString QuickAddLinkView::iconName() const
{
    return detectedIconName(detectedType());
}

bool QuickAddLinkView::canAdd() const
{
    return !m_url->text().isEmpty() && isValidLink(m_url->text());
}

void QuickAddLinkView::setAddress(const QString &address)
{
    m_url->setText(address);
    showHint();
}

void QuickAddLinkView::addressChanged()
{
    refresh();
    // Half an address is no mistake: what no longer holds goes at once, what is
    // to be said waits for a pause.
    if (m_hint->text() != hint())
        m_hint->clear();
    m_typing->start();
}

void QuickAddLinkView::refresh()
{
    const bool valid = canAdd();
    m_add->setEnabled(valid);
    m_name->setPlaceholderText(valid ? defaultName(m_url->text(), detectedType())
                                     : text("quickAdd.namePlaceholder"_text));
    m_icon->setIcon(symbolIcon(iconName()));
    LinkItem found;
    found.type = detectedType();
    found.path = m_url->text();
    m_icon->setText(text(kindLabel(found)));
    if (!m_url->text().isEmpty())
        m_offer->setLink(QString());
}

void QuickAddLinkView::showHint()
{
    m_typing->stop();
    m_hint->setText(hint());
}

/// What is to be said about the address; empty when all is well.
QString QuickAddLinkView::hint() const
{
    if (m_url->text().isEmpty())
        return {};
    if (!canAdd())
        return text("quickAdd.invalid"_text);
    const QString place = placeHint();
    if (!place.isEmpty() || mayExist(m_url->text(), m_services.volumes))
        return place;
    return text("quickAdd.missingFile"_text);
}

/// Where the same address is already; empty when it is nowhere.
QString QuickAddLinkView::placeHint() const
{
    const auto item = linkFromText(m_url->text(), {}, m_services.volumes, m_services.clock.now());
    const auto place = item ? placeOfSameAddress(m_services.links.links(), *item) : std::nullopt;
    if (!place)
        return {};
    return text("quickAdd.sameAddress %@"_text,
                place->isEmpty() ? text("quickAdd.topLevel"_text) : place->join(QStringLiteral(" › ")));
}

void QuickAddLinkView::offerClipboard()
{
    readCopied(m_services.pasteboard, Reading::Unasked, this, [this](const QMimeData &copied) {
        m_offer->setLink(m_url->text().isEmpty() ? linkToOffer(copied, m_services.volumes) : QString());
    });
}

/// With room for an offer, which comes when its owner has answered.
QSize QuickAddLinkView::sizeHint() const
{
    const QSize size = QWidget::sizeHint();
    return m_offer->isHidden() ? size + QSize(0, m_offer->sizeHint().height() + layout()->spacing()) : size;
}

void QuickAddLinkView::takeOffer()
{
    setAddress(m_offer->link());
    m_url->setFocus();
}

void QuickAddLinkView::pasteFromClipboard()
{
    m_url->setFocus();
    readCopied(m_services.pasteboard, Reading::ByUser, this, [this, before = m_url->text()](const QMimeData &copied) {
        const QString found = linkIn(copied);
        if (m_url->text() != before)
            return; // typed meanwhile
        if (isValidLink(found))
            setAddress(found);
        else
            m_hint->setText(text("quickAdd.nothingToPaste"_text));
    });
}

bool QuickAddLinkView::handleDrop(const QMimeData &dropped)
{
    const QString found = linkIn(dropped);
    if (!isValidLink(found))
        return false;
    setAddress(found);
    return true;
}

void QuickAddLinkView::add()
{
    if (m_url->text().isEmpty() && !m_offer->link().isEmpty())
        return takeOffer();
    if (!canAdd())
        return showHint();
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

/// Enter with nothing to add. The field would pass it on to the default button,
/// which may have come to life through what Enter just did.
bool QuickAddLinkView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_url || event->type() != QEvent::KeyPress || canAdd())
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    add();
    return true;
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
