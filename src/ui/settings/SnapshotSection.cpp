#include "ui/settings/SnapshotSection.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "services/DebugModeManager.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/EmptyState.h"
#include "ui/common/Icons.h"
#include "ui/common/NoticeBar.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SnapshotModel.h"
#include "ui/settings/SnapshotPreview.h"
#include "ui/settings/SnapshotTexts.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTreeView>

namespace orvelle {

namespace {

/// Heading and five rows.
constexpr int fewestLines = 6;

/// Gives the cells air.
class AiryDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(18, 8);
    }
};

QPushButton *namedButton(const char *name, const char *symbol, const QString &title, QWidget *parent)
{
    auto *button = new QPushButton(symbolIcon(QString::fromLatin1(symbol)), title, parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

} // namespace

SnapshotSection::SnapshotSection(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_model(new SnapshotModel(this)),
      m_list(makeList()),
      m_stack(new QStackedWidget(this)),
      m_notice(new NoticeBar(this)),
      m_preview(namedButton("previewSnapshot", "magnifyingglass", text("snapshot.preview"_text), this)),
      m_restore(namedButton("restoreSnapshot", "arrow.uturn.backward", text("snapshot.restore"_text), this))
{
    m_stack->addWidget(m_list);
    m_stack->addWidget(new EmptyState(QStringLiteral("archivebox.fill"), text("snapshot.emptyTitle"_text),
                                      text("snapshot.emptyMessage"_text), this));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(8);
    column->addWidget(sectionTitle(text("snapshot.title"_text), this));
    column->addWidget(sectionSubtitle(text("snapshot.subtitle"_text), this));
    column->addWidget(m_notice);
    column->addWidget(m_stack, 1);
    column->addWidget(makeButtons());

    connect(m_preview, &QPushButton::clicked, this, &SnapshotSection::preview);
    connect(m_restore, &QPushButton::clicked, this, &SnapshotSection::restoreSelected);
    connect(&services.links, &LinkStore::linksChanged, this, &SnapshotSection::scheduleReload);
    connect(&services.links, &LinkStore::historyChanged, this, &SnapshotSection::scheduleReload);
    connect(&services.notifications, &Notifications::debugModeChanged, this, &SnapshotSection::scheduleReload);
    refreshButtons();
}

QTreeView *SnapshotSection::makeList()
{
    auto *list = new QTreeView(this);
    list->setObjectName(QStringLiteral("snapshots"));
    list->setAccessibleName(text("snapshot.title"_text));
    list->setModel(m_model);
    list->setItemDelegate(new AiryDelegate(list));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAlternatingRowColors(true);
    list->setMinimumHeight(fewestLines * (list->fontMetrics().height() + 10));
    QHeaderView *header = list->header();
    header->setStretchLastSection(false);
    header->setSectionsMovable(false);
    header->setSectionResizeMode(SnapshotModel::DateColumn, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(SnapshotModel::ReasonColumn, QHeaderView::Stretch);
    header->setSectionResizeMode(SnapshotModel::CountColumn, QHeaderView::ResizeToContents);
    followSelection(list);
    connect(list, &QTreeView::activated, this, &SnapshotSection::preview);
    connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &SnapshotSection::refreshButtons);
    return list;
}

QWidget *SnapshotSection::makeButtons()
{
    auto *bar = new QWidget(this);
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins({});
    row->addWidget(m_preview);
    row->addWidget(m_restore);
    row->addStretch(1);
    return bar;
}

void SnapshotSection::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Also for the sake of "today".
    reload();
}

void SnapshotSection::scheduleReload()
{
    if (!m_restoring)
        m_notice->hide();
    m_outdated = true;
    if (!isVisible())
        return;
    // Both signals of one edit make one reading of the folder.
    m_services.clock.after(std::chrono::milliseconds(0), this, [this] {
        if (m_outdated)
            reload();
    });
}

void SnapshotSection::reload()
{
    m_outdated = false;
    const SnapshotInfo *before = selected();
    const QString name = before ? before->name : QString();
    m_model->setSnapshots(m_services.snapshots.list(m_services.debugMode.isDebugMode()), m_services.clock.now());
    const QModelIndex same = m_model->indexOf(name);
    m_list->setCurrentIndex(same.isValid() ? same : m_model->index(0, 0));
    m_stack->setCurrentIndex(m_model->rowCount() > 0 ? 0 : 1);
    refreshButtons();
}

void SnapshotSection::refreshButtons()
{
    const bool some = selected() != nullptr;
    m_preview->setEnabled(some);
    m_restore->setEnabled(some);
}

const SnapshotInfo *SnapshotSection::selected() const
{
    const QModelIndex current = m_list->currentIndex();
    return current.isValid() ? &m_model->snapshot(current) : nullptr;
}

void SnapshotSection::preview()
{
    const SnapshotInfo *chosen = selected();
    if (!chosen)
        return;
    const SnapshotInfo info = *chosen;
    const auto links = m_services.snapshots.load(info.name, m_services.debugMode.isDebugMode());
    if (!links) {
        sayWhyNot(text("snapshot.unreadableTitle"_text), text("snapshot.unreadable %@"_text, links.error().detail));
        return;
    }
    auto *dialog = new SnapshotPreview(info, *links, m_services.links.links(), m_services.clock.now(), this);
    connect(dialog, &QDialog::accepted, this, [this, info] { restore(info); });
    dialog->open();
}

void SnapshotSection::restoreSelected()
{
    if (const SnapshotInfo *chosen = selected())
        restore(SnapshotInfo(*chosen));
}

void SnapshotSection::restore(const SnapshotInfo &snapshot)
{
    const auto readable = m_services.snapshots.load(snapshot.name, m_services.debugMode.isDebugMode());
    if (!readable) {
        sayWhyNot(text("snapshot.unreadableTitle"_text), text("snapshot.unreadable %@"_text, readable.error().detail));
        return;
    }
    const QScopedValueRollback restoring(m_restoring, true);
    if (!m_services.links.restoreSnapshot(snapshot.name)) {
        sayWhyNot(text("snapshot.refusedTitle"_text), text("snapshot.refused"_text));
        return;
    }
    offerUndo(text("snapshot.restored %@"_text, momentText(snapshot.takenAt, m_services.clock.now())));
}

void SnapshotSection::offerUndo(const QString &message)
{
    m_notice->showNotice(message, {{text("settings.undo"_text), [this] {
                                        m_services.links.undo();
                                        m_notice->hide();
                                    }}});
    QAccessibleEvent said(m_notice, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}

void SnapshotSection::sayWhyNot(const QString &title, const QString &why)
{
    m_services.alerts.show({Alert::Style::Warning, title, why, {text("sheet.ok"_text)}}, {});
    reload();
}

} // namespace orvelle
